#pragma once
namespace kelp {
// The plug-in host: loading comes last in RuntimeInitExternalClasses, and
// plug-in classes are found by name after the library's.
void WirePlugins();
} // namespace kelp

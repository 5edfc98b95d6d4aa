#pragma once
namespace kelp {
// The Application classes and _Pollable, the run loop's application client,
// and the standard handler of unhandled exceptions.
void WireApp();
} // namespace kelp

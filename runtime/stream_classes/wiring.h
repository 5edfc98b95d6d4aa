#pragma once
namespace kelp {
// The TextInputStream, TextOutputStream and BinaryStream classes.
void WireStreamClasses();
} // namespace kelp

#pragma once
namespace kelp {
// The shape classes; the pictures' vector part.
void WireShapes();
} // namespace kelp

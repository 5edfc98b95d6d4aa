#pragma once
namespace kelp {
// The Picture and RGBSurface classes.
void WirePictures();
} // namespace kelp

#pragma once

#include <windows.h>

namespace brisk {

// Paints the fake game's picture, a harbour at night with a score line, over width x height pixels from the origin.
void paintScene(HDC context, int width, int height);

} // namespace brisk

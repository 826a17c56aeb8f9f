#pragma once

#include <windows.h>

namespace brisk {

// The host's title-information message (WM_COPYDATA): the window, its wParam and the structure its lParam points to,
// which may be null. Window thread.
void receiveTitleInfo(HWND window, WPARAM wParam, const COPYDATASTRUCT* data);

} // namespace brisk

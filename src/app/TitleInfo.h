#pragma once

#include <windows.h>

namespace brisk {

// The host's title-information message (WM_COPYDATA): reports a malformed block in the log; a well-formed one changes
// nothing. The structure that the message's lParam points to may be null; the window is not used. Window thread.
void receiveTitleInfo(HWND window, WPARAM wParam, const COPYDATASTRUCT* data);

} // namespace brisk

#include "app/TitleInfo.h"

namespace brisk {

void receiveTitleInfo(HWND /*window*/, WPARAM /*wParam*/, const COPYDATASTRUCT* /*data*/) {}

} // namespace brisk

/* What others know of the fake game: its names, its window class and the messages it obeys. The resource compiler reads
 * the names, too. All of them are invented. */
#ifndef BRISK_FAKE_GAME_CONTRACT_H
#define BRISK_FAKE_GAME_CONTRACT_H

#define FAKE_GAME_PRODUCT "Starlit Harbour"
#define FAKE_GAME_PUBLISHER "Brackwater Games"
#define FAKE_GAME_COPYRIGHT "(c) Brackwater Games"
#define FAKE_GAME_VERSION "2.4.1"

#ifndef RC_INVOKED

#include <windows.h>

namespace brisk {

inline constexpr char kFakeGameClass[] = "StarlitHarbourWindow";

/* Sent to the game's window, except the last two, which are posted. The answer is 1 when the request succeeded. */
enum FakeGameMessage : UINT {
    FakeGameTakeForeground = WM_APP + 1, /* brings the game's window to the foreground */
    FakeGameGiveForeground,              /* lParam: the window that gets the foreground */
    FakeGameLeaveNoForeground,           /* afterwards no window at all is in the foreground */
    FakeGameEnd,                         /* wParam: exit code of an orderly end */
    FakeGameDie                          /* wParam: exit code of an end on the spot, nothing cleaned up */
};

} // namespace brisk

#endif
#endif

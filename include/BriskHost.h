/*
 * Brisk's contract with its host: everything a program needs to talk to a running service, and nothing else.
 * C and C++; take this one file as it is. docs/host-interface.md explains it with examples.
 *
 * The host finds the service's hidden window with FindWindowA(BRISK_WINDOW_CLASS, NULL) and posts messages to it
 * (PostMessageA). The service runs as the same user at the same integrity level.
 */
#ifndef BRISK_HOST_H
#define BRISK_HOST_H

/* The version of the service that this file came with; all of it holds for later versions, too. */
#define BRISK_HOST_VERSION_MAJOR 1
#define BRISK_HOST_VERSION_MINOR 9

/* Class (and name) of the service's hidden top-level window. One service runs per desktop. */
#define BRISK_WINDOW_CLASS "BriskClass"

/* Named manual-reset event, set once the window exists and never reset; gone when the service has quit. */
#define BRISK_STARTED_EVENT "BriskStarted"

/* Shut down. wParam and lParam are ignored. */
#define BRISK_QUIT 0x0401 /* WM_USER + 1 */

/* A game was started. wParam: the game id of the title database; lParam: the game's process id.
 * Each is taken as an unsigned 32-bit number. */
#define BRISK_APP_STARTED 0x0402 /* WM_USER + 2 */

/* The game has finished. wParam and lParam are written to the log and have no other meaning. */
#define BRISK_APP_FINISHED 0x0403 /* WM_USER + 3 */

/* 0x0404 (WM_USER + 4) is not a message of the service. */

/* Adjust every installed title now. wParam and lParam are ignored. */
#define BRISK_MASSIVE_PATCHING 0x0405 /* WM_USER + 5 */

/* Forget the user's answers to earlier offers. wParam and lParam are ignored. */
#define BRISK_RESET_PROMPT_COUNTERS 0x0406 /* WM_USER + 6 */

/* Title information, sent (not posted) by WM_COPYDATA: this tag in wParam and in COPYDATASTRUCT.dwData, the JSON
 * text in lpData, its length in bytes in cbData, no terminator. */
#define BRISK_TITLE_INFO_TAG 0x404

#endif /* BRISK_HOST_H */

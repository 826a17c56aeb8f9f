/* host.c: runs a game and tells the service about it: host GAMEID PROGRAM */
#include "BriskHost.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <windows.h>

/* Looks for the window every time: the service may have been restarted in between. */
static int tell(UINT message, WPARAM wParam, LPARAM lParam)
{
    HWND service = FindWindowA(BRISK_WINDOW_CLASS, NULL);
    return service != NULL && PostMessageA(service, message, wParam, lParam);
}

static void send_title_info(const char *json)
{
    HWND service = FindWindowA(BRISK_WINDOW_CLASS, NULL);
    COPYDATASTRUCT data;
    DWORD_PTR answer; /* 0 whatever came of it */
    data.dwData = BRISK_TITLE_INFO_TAG;
    data.cbData = (DWORD)strlen(json);
    data.lpData = (void *)json;
    if (service != NULL)
        SendMessageTimeoutA(service, WM_COPYDATA, BRISK_TITLE_INFO_TAG, (LPARAM)&data, SMTO_ABORTIFHUNG, 10000, &answer);
}

int main(int argc, char **argv)
{
    STARTUPINFOA startup = {0};
    PROCESS_INFORMATION game;
    if (argc != 3)
        return 2;
    send_title_info("{\"titles\": []}");
    startup.cb = sizeof startup;
    if (!CreateProcessA(argv[2], NULL, NULL, NULL, FALSE, 0, NULL, NULL, &startup, &game))
        return 1;
    if (!tell(BRISK_APP_STARTED, strtoul(argv[1], NULL, 10), (LPARAM)(DWORD)game.dwProcessId))
        fprintf(stderr, "no service is running\n");
    WaitForSingleObject(game.hProcess, INFINITE);
    tell(BRISK_APP_FINISHED, 0, 0);
    CloseHandle(game.hThread);
    CloseHandle(game.hProcess);
    return 0;
}

/* quit.c: has the service end, as an updater does before it replaces its files; 0 when none runs any more: quit */
#include "BriskHost.h"

#include <windows.h>

/* Asks the service to end and waits for its process. Nonzero when none runs any more on this desktop. */
static int quit_service(DWORD milliseconds)
{
    HWND service = FindWindowA(BRISK_WINDOW_CLASS, NULL);
    DWORD id = 0;
    HANDLE process;
    int ended;
    if (service == NULL)
        return 1;
    GetWindowThreadProcessId(service, &id);
    process = OpenProcess(SYNCHRONIZE, FALSE, id);
    if (process == NULL)
        return 0;
    ended = PostMessageA(service, BRISK_QUIT, 0, 0) && WaitForSingleObject(process, milliseconds) == WAIT_OBJECT_0;
    CloseHandle(process);
    return ended;
}

int main(void)
{
    return quit_service(30000) ? 0 : 1;
}

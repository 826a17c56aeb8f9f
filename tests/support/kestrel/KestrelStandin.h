// What the stand-in for the vendor's device library and those who use it agree on: environment variables, the script
// that tells it what to do and the record of what was asked of it. Both are found when the library is loaded.
//
// The script is text, one item a line. Empty lines and lines that begin with '#' count for nothing.
//
//   desktop X Y [TYPE]             one more desktop: its top-left point, its type (single, duplicate or span; single)
//   display WIDTH HEIGHT HERTZ     one more display of the desktop above; HERTZ may have decimals
//   first-index N                  the first index of every list (0)
//   frames RATE...                 what Fps.GetFps tells: one rate a call, the last one repeats; RATE*N stands for N
//                                  times RATE. Several such lines make one series. Without rates it tells 0
//   result CALL CODE [empty]       the call answers CODE. From 3 on it does nothing else; 0, 1 and 2 let it do its
//   work,
//                                  unless "empty" stands behind: then it leaves its output as it was
//   result CALL:N CODE [empty]     the same for the call's N-th time (1 is the first) only
//
// The calls are
//
//   KestrelQueryFullVersion, KestrelQueryVersion, KestrelInitialize, KestrelInitializeWithIncompatibleDriver,
//   KestrelInitializeWithCallerTarn, KestrelTerminate,
//   SystemServices.GetDesktopServices, SystemServices.GetPerformanceMonitoringServices,
//   PerformanceMonitoringServices.GetCurrentFps, Fps.GetFps,
//   DesktopServices.GetDesktops, DesktopList.At, Desktop.GetTopLeft, Desktop.GetType, Desktop.GetDisplays,
//   DisplayList.At, Display.GetNativeResolution, Display.GetRefreshRate
//
// A missing entry point is no matter of the script: see kestrelFolderWithout in KestrelStandinControl.h.
//
// The record is text, one line an event, written when the event happens and appended to what the file holds:
//
//   CALL [ARGUMENT...] -> CODE         the start calls have the requested version as an argument
//   ("0x000100000005001E"),
//                                      the one with a caller's Tarn also its context and adapter in hexadecimal, the
//                                      lists' At the index
//   KestrelTerminate -> CODE, N live   N: references that somebody still holds
//   release OBJECT                     an object's last reference was released (OBJECT as in the calls' names)
//   unload, N live                     the library was unloaded; not written when the process ends with it
//   error TEXT                         a script that cannot be read (every call answers 99 then), a wrong index, a
//                                      release too many, a use of what Terminate has ended
#pragma once

namespace brisk::kestrelstandin {

// The script's file. Without it the library behaves as told by kOneDisplay.
inline constexpr wchar_t kScriptVariable[] = L"KESTREL_STANDIN_SCRIPT";
// The record's file; without it nothing is recorded.
inline constexpr wchar_t kRecordVariable[] = L"KESTREL_STANDIN_RECORD";

inline constexpr char kOneDisplay[] = "desktop 0 0\n"
                                      "display 2560 1440 59.94\n"
                                      "frames 60\n";

inline constexpr wchar_t kLibraryFile[] = L"orlankestrel64.dll";

// Exported besides the library's own entry points: the references that somebody holds.
using LiveReferencesFunction = unsigned();
inline constexpr char kLiveReferencesExport[] = "KestrelStandinLiveReferences";

} // namespace brisk::kestrelstandin

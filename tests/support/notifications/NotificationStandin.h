// What the notification stand-in and those who use it agree on: environment variables, the record, injected failures
// and commands.
//
// The record is UTF-8, one line a call, written when the call is answered:
//
//   line     = call [" -> 0x" 8 hexadecimal digits] "\n"      the HRESULT stands only where the call failed
//   call     = "DllGetActivationFactory " class
//            | "ActivateInstance " class
//            | "CreateToastNotifier"
//            | "CreateToastNotifierWithId " text
//            | "GetTemplateContent " type
//            | "LoadXml " text
//            | "CreateToastNotification " n
//            | "get_Content " n
//            | "put_ExpirationTime " n " " (universal time | "none")
//            | "get_ExpirationTime " n
//            | ("add_" | "remove_") ("Activated" | "Dismissed" | "Failed") " " n
//            | "Show " n
//            | "Hide " n
//            | "get_Setting"
//            | "Activated " n " " text          a press, a click or a command raised the event; its arguments
//            | "Dismissed " n " " reason        the cross or a command raised it (what follows from Hide has no line)
//            | "Failed " n " 0x" error
//            | "Body " n " " x " " y            the toast is drawn; a point of its body in screen coordinates
//            | "Close " n " " x " " y           the centre of its close cross
//            | "Button " n " " k " " x " " y " " text      the centre of its k-th button, counted from 0, and its label
//            | "Error " text                    the stand-in itself cannot do what it was told
//   class    = a full runtime class name
//   n        = the number of a notification: 1 is the process's first that was created (0 where creating failed)
//   text     = characters as they are, but "\\", "\n", "\r" and "\t" for these four and "\uXXXX" for other control
//              characters and for halves of surrogate pairs
//
// What handlers ask of an event's arguments, QueryInterface and reference counting leave no line.
//
// Failures: "call=HRESULT" or "call:n=HRESULT" (from the n-th time on), separated by commas. The calls are those of the
// record from CreateToastNotifier to get_Setting, and besides:
//   Activate.ToastNotificationManager, Activate.ToastNotification, Activate.XmlDocument   (DllGetActivationFactory)
//   ActivateInstance, get_Arguments, get_Reason, get_ErrorCode
//   QueryInterface.<interface>, for example QueryInterface.IXmlDocumentIO
//
// Commands: one UTF-8 message "<limit in milliseconds> <command>" to the pipe, one message back: "ok\n" and the
// command's output, or "error <what is wrong>". <n> may be "last", the notification shown last.
//   list                     the toasts shown: "<n> screen|centre <title>[ | <label>]...", one a line
//   press <n> <k>            button k was pressed: Activated with that action's arguments; the toast is gone then
//   body <n>                 the body was clicked: Activated with the toast's launch arguments; the toast is gone then
//   activate <n> <text>      Activated with any arguments (the rest of the message); the toast stays
//   dismiss <n> <reason>     Dismissed: 0 and 2 leave the toast in the notification centre, 1 takes it away
//   fail <n> <hresult>       Failed; the toast is gone then
//   wait <count>             until Show has succeeded that many times
//   idle                     until no event is being delivered
//   failures <rules>         replaces the failures, counting anew; no rules: none
//   objects                  the number of COM objects that are alive
//   reset                    as if just loaded, without failures
// The five event commands answer "<number of handlers> 0x<first failure of a handler, or 00000000>" when every handler
// has returned.
#pragma once

#include <windows.h>

namespace brisk::standin {

// The record's file; without it nothing is recorded.
inline constexpr wchar_t kRecordVariable[] = L"NOTIFICATION_STANDIN_RECORD";
// Failures from the start.
inline constexpr wchar_t kFailVariable[] = L"NOTIFICATION_STANDIN_FAIL";
// "1": toasts are drawn on the primary display.
inline constexpr wchar_t kDrawVariable[] = L"NOTIFICATION_STANDIN_DRAW";
// The command pipe's name after "\\.\pipe\".
inline constexpr wchar_t kPipeVariable[] = L"NOTIFICATION_STANDIN_PIPE";
inline constexpr wchar_t kDefaultPipe[] = L"notification-standin";
inline constexpr wchar_t kPipePrefix[] = L"\\\\.\\pipe\\";
// The longest message either way, in bytes.
inline constexpr DWORD kLongestMessage = 256 * 1024;

// The command interpreter, exported for the process that loaded the DLL: takes a message, hands every answer to
// `receive` before it returns. Events still arrive on the stand-in's own thread.
using CommandFunction = void(const char* message, void (*receive)(void* context, const char* answer), void* context);
inline constexpr char kCommandExport[] = "NotificationStandinCommand";

} // namespace brisk::standin

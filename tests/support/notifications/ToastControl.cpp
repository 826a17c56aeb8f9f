// toast-control: what a user does with toasts, on the command line, for a service that runs with the notification
// stand-in.
#include <cstdio>
#include <stdexcept>
#include <string>
#include <vector>

#include <windows.h>

#include <shellapi.h>

#include "NotificationStandinControl.h"

namespace {

using namespace brisk::standin;

constexpr char kHelp[] = R"(Usage: toast-control [--limit MS] [--pipe NAME] COMMAND

Does what a user does with the toasts of a service that runs with the notification stand-in.

  list                     the toasts shown: number, screen or centre, title, button labels
  press N K                presses button K (from 0) of toast N
  body N                   clicks the toast beside its buttons
  activate N TEXT          activates the toast with arguments that no button has
  dismiss N REASON         0 the user closed it, 1 the application hid it, 2 it timed out
  fail N HRESULT           the toast could not be shown, for example 0x80070005
  wait COUNT               waits until the service has shown that many toasts
  idle                     waits until no event is being delivered
  failures [RULES]         calls that fail from now on, for example Show=0x80070005 or Show:2=0x80070005
  objects                  the number of the stand-in's COM objects that are alive
  register [DLL]           has Windows find the stand-in (by default the one beside toast-control)
  unregister [DLL]         the opposite

N counts the service's notifications from 1; "last" is the one shown last.
A command waits up to MS milliseconds (10000) for the service, and for the service's handlers to return.
NAME is the stand-in's pipe where NOTIFICATION_STANDIN_PIPE names another than the usual one.

Exit code: 0 done, 1 it could not be done, 2 wrong usage.
)";

struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

std::string toUtf8(const std::wstring& text) {
    std::string bytes(text.size() * 3, '\0');
    bytes.resize(
        static_cast<size_t>(WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), bytes.data(),
                                                static_cast<int>(bytes.size()), nullptr, nullptr)));
    return bytes;
}

std::vector<std::wstring> commandLine() {
    int count = 0;
    wchar_t** words = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<std::wstring> arguments(words + 1, words + count);
    LocalFree(words);
    return arguments;
}

std::filesystem::path dllBesideProgram() {
    wchar_t path[MAX_PATH];
    const DWORD length = GetModuleFileNameW(nullptr, path, MAX_PATH);
    return std::filesystem::path(path, path + length).replace_filename("notification-standin.dll");
}

// How many words may follow a command's name.
struct Command {
    const char* name;
    size_t fewest;
    size_t most;
};
constexpr Command kCommands[] = {{"list", 0, 0},     {"press", 2, 2},   {"body", 1, 1},     {"activate", 2, 2},
                                 {"dismiss", 2, 2},  {"fail", 2, 2},    {"wait", 1, 1},     {"idle", 0, 0},
                                 {"failures", 0, 1}, {"objects", 0, 0}, {"register", 0, 1}, {"unregister", 0, 1}};

void check(const std::string& name, size_t words) {
    for (const Command& command : kCommands) {
        if (name == command.name) {
            if (words < command.fewest || words > command.most) {
                throw UsageError(name + " takes " + (command.fewest < command.most ? "at most " : "") +
                                 std::to_string(command.most) + (command.most == 1 ? " argument" : " arguments"));
            }
            return;
        }
    }
    throw UsageError("unknown command '" + name + "'");
}

void run(std::vector<std::wstring> words) {
    std::chrono::milliseconds limit = kDefaultLimit;
    NotificationStandinControl control;
    while (!words.empty() && words.front().starts_with(L"--")) {
        const std::string option = toUtf8(words.front());
        if (option == "--help") {
            std::fputs(kHelp, stdout);
            return;
        }
        if (option != "--limit" && option != "--pipe") {
            throw UsageError("unknown option '" + option + "'");
        }
        if (words.size() < 2) {
            throw UsageError(option + " takes an argument");
        }
        if (option == "--pipe") {
            control = NotificationStandinControl(words[1]);
        } else {
            wchar_t* end = nullptr;
            limit = std::chrono::milliseconds(std::wcstol(words[1].c_str(), &end, 10));
            if (*end != L'\0' || words[1].empty() || limit.count() < 0) {
                throw UsageError("--limit takes a number of milliseconds");
            }
        }
        words.erase(words.begin(), words.begin() + 2);
    }
    if (words.empty()) {
        throw UsageError("a command is missing");
    }
    std::string text = toUtf8(words.front());
    check(text, words.size() - 1);
    if (text == "register" || text == "unregister") {
        const std::filesystem::path dll = words.size() > 1 ? std::filesystem::path(words[1]) : dllBesideProgram();
        (text == "register" ? registerStandin : unregisterStandin)(dll);
        return;
    }
    for (size_t i = 1; i < words.size(); ++i) {
        text.append(1, ' ').append(toUtf8(words[i]));
    }
    const std::string output = control.command(text, limit);
    std::printf("%s%s", output.c_str(), output.empty() || output.ends_with('\n') ? "" : "\n");
}

} // namespace

int main() {
    SetConsoleOutputCP(CP_UTF8);
    try {
        run(commandLine());
        return 0;
    } catch (const UsageError& error) {
        std::fprintf(stderr, "toast-control: %s; see toast-control --help\n", error.what());
        return 2;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "toast-control: %s\n", error.what());
        return 1;
    }
}

#include "Desktop.h"

#include "FaultPoints.h"
#include "base/TextEncoding.h"
#include "support/ModuleNames.h"

#include <algorithm>
#include <cstring>
#include <sstream>
#include <utility>

namespace brisk::testing {

namespace {

const HANDLE kImageHandle = reinterpret_cast<HANDLE>(std::uintptr_t{0xF04});

template <class... Numbers>
std::string describe(const char* name, Numbers... numbers) {
    std::ostringstream text;
    text << name << std::hex << std::showbase;
    ((text << ' ' << numbers), ...);
    return text.str();
}

std::uintptr_t number(const void* handle) {
    return reinterpret_cast<std::uintptr_t>(handle);
}

} // namespace

Desktop::Desktop() {
    GetForegroundWindowFault.intercept([this] { return foreground; });
    GetWindowThreadProcessIdFault.intercept([this](HWND window, DWORD* process) {
        *process = window == foreground && window ? foregroundProcess : 0;
        return DWORD{1};
    });
    IsWindowFault.intercept([this](HWND window) -> BOOL { return window && isForegroundAWindow; });
    SetTimerFault.intercept([this](HWND window, UINT_PTR id, UINT period, TIMERPROC procedure) {
        calls.push_back(describe("SetTimer", number(window), id) + " " + std::to_string(period) +
                        (procedure ? " procedure" : ""));
        return UINT_PTR{1};
    });
    KillTimerFault.intercept([this](HWND window, UINT_PTR id) -> BOOL {
        calls.push_back(describe("KillTimer", number(window), id));
        return TRUE;
    });
    OpenProcessFault.intercept([this](DWORD access, BOOL inherits, DWORD process) -> HANDLE {
        if (access != PROCESS_QUERY_INFORMATION) {
            return executable.empty() ? nullptr : kImageHandle;
        }
        calls.push_back(describe("OpenProcess", access, inherits, process));
        return canOpen ? kGameHandle : nullptr;
    });
    GetExitCodeProcessFault.intercept([this](HANDLE process, DWORD* code) -> BOOL {
        *code = exitCode;
        return process == kGameHandle && hasExitCode;
    });
    CloseHandleFault.intercept([this](HANDLE handle) -> BOOL {
        if (handle != kGameHandle && handle != kImageHandle) {
            return CloseHandleFault.real(handle);
        }
        if (handle == kGameHandle) {
            calls.push_back(describe("CloseHandle", number(handle)));
        }
        return TRUE;
    });
    K32GetModuleFileNameExAFault.intercept(
        [this](HANDLE, HMODULE, char* path, DWORD size) { return giveNameAsWindows(executable, path, size); });
    GetFileVersionInfoSizeWFault.intercept([this](const wchar_t* file, DWORD*) {
        askedFile = toNarrow(file);
        return publisher.empty() ? DWORD{0} : static_cast<DWORD>((publisher.size() + 1) * sizeof(wchar_t));
    });
    GetFileVersionInfoWFault.intercept([](const wchar_t*, DWORD, DWORD, void*) -> BOOL { return TRUE; });
    // The strings lie in the resource's own buffer.
    VerQueryValueWFault.intercept(
        [this](const void* resource, const wchar_t* block, void** value, UINT* length) -> BOOL {
            const std::wstring name = block;
            char* buffer = static_cast<char*>(const_cast<void*>(resource));
            *value = buffer;
            if (name == L"\\VarFileInfo\\Translation") {
                std::fill_n(buffer, 4, '\0');
                *length = 4;
                return TRUE;
            }
            const std::wstring text = toWide(publisher);
            std::memcpy(buffer, text.c_str(), (text.size() + 1) * sizeof(wchar_t));
            *length = 1;
            return name == L"\\StringFileInfo\\00000000\\CompanyName";
        });
}

std::vector<std::string> Desktop::takeCalls() {
    return std::exchange(calls, {});
}

} // namespace brisk::testing

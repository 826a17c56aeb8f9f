#include "host/model/FaultSwitches.h"

#include "host/simulation/SimulatedCall.h"

#include <array>

namespace brisk::model {

namespace {

template <auto* Function, class Result>
void set(const FaultPlan& plan, Result result, DWORD lastError) {
    auto& call = host::simulatedCall<Function>;
    call.reset();
    switch (plan.mode) {
    case FaultPlan::Mode::None:
        break;
    case FaultPlan::Mode::Once:
        call.failOnce(result, lastError);
        break;
    case FaultPlan::Mode::Always:
        call.fail(result, lastError);
        break;
    case FaultPlan::Mode::Random:
        call.failAtRandom(result, lastError, plan.seed, plan.oneIn);
        break;
    }
}

} // namespace

void setSwitch(Fault fault, const FaultPlan& plan) {
    const auto error = static_cast<DWORD>(plan.code);
    switch (fault) {
    case Fault::CreateKey:
        return set<RegCreateKeyExA>(plan, plan.code, 0);
    case Fault::OpenKey:
        return set<RegOpenKeyA>(plan, plan.code, 0);
    case Fault::OpenKeyEx:
        return set<RegOpenKeyExA>(plan, plan.code, 0);
    case Fault::SetValue:
        return set<RegSetValueExA>(plan, plan.code, 0);
    case Fault::QueryValue:
        return set<RegQueryValueExA>(plan, plan.code, 0);
    case Fault::DeleteValue:
        return set<RegDeleteValueA>(plan, plan.code, 0);
    case Fault::DeleteTree:
        return set<RegDeleteTreeA>(plan, plan.code, 0);
    case Fault::OpenProcess:
        return set<OpenProcess>(plan, nullptr, error);
    case Fault::ExitCode:
        return set<GetExitCodeProcess>(plan, FALSE, error);
    case Fault::ModuleName:
        return set<K32GetModuleFileNameExA>(plan, 0u, error);
    case Fault::VersionSize:
        return set<GetFileVersionInfoSizeW>(plan, 0u, error);
    case Fault::VersionRead:
        return set<GetFileVersionInfoW>(plan, FALSE, error);
    case Fault::VersionQuery:
        return set<VerQueryValueW>(plan, FALSE, error);
    case Fault::ForegroundWindow:
        return set<GetForegroundWindow>(plan, nullptr, error);
    case Fault::WindowProcess:
        return set<GetWindowThreadProcessId>(plan, 0u, error);
    case Fault::IsWindow:
        return set<IsWindow>(plan, FALSE, error);
    case Fault::SetTimer:
        return set<SetTimer>(plan, 0u, error);
    case Fault::Attributes:
        return set<GetFileAttributesW>(plan, INVALID_FILE_ATTRIBUTES, error);
    case Fault::FindFirst:
        return set<FindFirstFileW>(plan, INVALID_HANDLE_VALUE, error);
    case Fault::FindNext:
        return set<FindNextFileW>(plan, FALSE, error);
    case Fault::DisplayDevice:
        return set<EnumDisplayDevicesA>(plan, FALSE, error);
    case Fault::DisplaySettings:
        return set<EnumDisplaySettingsA>(plan, FALSE, error);
    case Fault::Count:
        break;
    }
}

std::int32_t codeFor(Fault fault, std::uint64_t choice) {
    switch (fault) {
    case Fault::Attributes:
        return static_cast<std::int32_t>(std::array{ERROR_ACCESS_DENIED, ERROR_PATH_NOT_FOUND, ERROR_BAD_NETPATH,
                                                    ERROR_SHARING_VIOLATION}[choice % 4]);
    case Fault::FindFirst:
        return choice % 2 == 0 ? ERROR_FILE_NOT_FOUND : ERROR_ACCESS_DENIED;
    case Fault::FindNext:
        return choice % 2 == 0 ? ERROR_NO_MORE_FILES : ERROR_ACCESS_DENIED;
    default:
        return choice % 2 == 0 ? ERROR_ACCESS_DENIED : ERROR_NOT_ENOUGH_MEMORY;
    }
}

} // namespace brisk::model

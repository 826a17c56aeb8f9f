#include "support/Places.h"

#ifdef _WIN32
#include <windows.h>
#endif

namespace brisk::testing {

std::filesystem::path place(const std::filesystem::path& whenBuilt) {
#ifdef _WIN32
    wchar_t folder[MAX_PATH] = L"";
    const DWORD length = GetEnvironmentVariableW(L"BRISK_TESTS_FOLDER", folder, MAX_PATH);
    if (length > 0 && length < MAX_PATH) {
        return folder / whenBuilt.lexically_relative(BRISK_CHECKOUT);
    }
#endif
    return whenBuilt;
}

} // namespace brisk::testing

#include "support/Places.h"

#ifdef _WIN32
#include <array>
#include <stdexcept>

#include <windows.h>
#endif

namespace brisk::testing {

#ifdef _WIN32
namespace {

std::filesystem::path checkout() {
    std::array<wchar_t, std::size_t{32} * 1024> program{};
    GetModuleFileNameW(nullptr, program.data(), static_cast<DWORD>(program.size()));
    const std::wstring path = std::filesystem::path(program.data()).generic_wstring();
    const std::size_t build = path.rfind(L"/" BRISK_BUILD_FOLDER L"/");
    if (build == std::wstring::npos) {
        throw std::runtime_error("a test program has to lie below the folder of its build");
    }
    return path.substr(0, build);
}

} // namespace
#endif

std::filesystem::path place(const std::filesystem::path& fromCheckout) {
#ifdef _WIN32
    if (fromCheckout.is_relative()) {
        return checkout() / fromCheckout;
    }
#endif
    return fromCheckout;
}

} // namespace brisk::testing

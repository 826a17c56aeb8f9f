// What tests need that only Wine has: a machine of their own, on which stand-ins may be registered.
#pragma once

#include <cstdlib>
#include <string>

#include <gtest/gtest.h>

#include <windows.h>

namespace brisk::testing {

// BRISK_TESTS_WITHOUT_WINE in the environment says no also under Wine, so that the tests' way on Windows can be seen
// there.
inline bool isWine() {
    return GetProcAddress(GetModuleHandleA("ntdll.dll"), "wine_get_version") != nullptr &&
           std::getenv("BRISK_TESTS_WITHOUT_WINE") == nullptr;
}

// Of Wine "10.0" 10. Under Wine only.
inline int wineVersion() {
    using GetVersion = const char* (*)();
    const auto getVersion = reinterpret_cast<GetVersion>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("ntdll.dll"), "wine_get_version")));
    return std::stoi(getVersion());
}

// Called in the constructor or in the set-up of a test. Skips the test and answers false where this is not Wine.
inline bool needsWine(const char* reason) {
    if (isWine()) {
        return true;
    }
    [reason] { GTEST_SKIP() << "only under Wine: " << reason; }();
    return false;
}

} // namespace brisk::testing

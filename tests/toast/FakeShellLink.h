// A shell link whose calls fail on demand and whose property store works, which Wine's does not.
#pragma once

#include "toast/FaultPoints.h"

#include <string>
#include <vector>

namespace brisk::testing {

// What every fake shell link shares while this lives: CoCreateInstance gives fakes.
class FakeShellLinks {
public:
    FakeShellLinks();
    FakeShellLinks(const FakeShellLinks&) = delete;
    FakeShellLinks& operator=(const FakeShellLinks&) = delete;

    // The calls in order, with their arguments.
    std::vector<std::string> calls;
    // The call of this name fails, for example "Load".
    std::string failing;
    // The id that a loaded link carries.
    std::wstring storedId;
    int alive = 0;

    HRESULT record(const std::string& name, const std::wstring& argument = {});
};

} // namespace brisk::testing

#pragma once

#include <string>

#include <windows.h>

#include "CallFailures.h"

namespace brisk::standin {

// Appends a call's line to the record, with the failure it was answered with.
void recordCall(const char* call, const std::string& arguments, HRESULT result);

// Answers one call of an interface: an injected failure instead of `body`, and the line in the record. `arguments` is
// read after `body` has run.
template <class Body>
HRESULT answer(const char* call, const std::string& arguments, Body body) {
    HRESULT result = CallFailures::instance().next(call);
    if (SUCCEEDED(result)) {
        result = body();
    }
    recordCall(call, arguments, result);
    return result;
}

} // namespace brisk::standin

#include "Calls.h"

#include "CallRecord.h"
#include "Text.h"

namespace brisk::standin {

void recordCall(const char* call, const std::string& arguments, HRESULT result) {
    std::string line = call;
    if (!arguments.empty()) {
        line += " " + arguments;
    }
    if (FAILED(result)) {
        line += " -> " + hresultText(result);
    }
    recordLine(line);
}

} // namespace brisk::standin

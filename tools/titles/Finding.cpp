#include "tools/titles/Finding.h"

namespace brisk::workbench {

const char* nameOf(Severity severity) {
    switch (severity) {
    case Severity::Error:
        return "error";
    case Severity::Warning:
        return "warning";
    case Severity::Note:
        break;
    }
    return "note";
}

} // namespace brisk::workbench

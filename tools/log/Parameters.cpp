#include "tools/log/Parameters.h"

#include "base/ParameterPatterns.h"
#include "pattern/SettingPattern.h"

namespace brisk::logbook {

std::map<std::string, std::string> readParameters(const std::string& commandLine) {
    std::map<std::string, std::string> parameters;
    for (const ParameterPattern& parameter : kParameterPatterns) {
        if (const auto match = SettingPattern(parameter.pattern).search(commandLine)) {
            parameters.emplace(parameter.flag, (*match)[3]);
        }
    }
    return parameters;
}

} // namespace brisk::logbook

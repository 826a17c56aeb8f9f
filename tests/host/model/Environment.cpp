#include "host/model/Environment.h"

#include "host/simulation/SimulatedCall.h"

namespace brisk::model {

bool Environment::fails(Fault fault) {
    FaultPlan& plan = faults[static_cast<std::size_t>(fault)];
    ++plan.calls;
    switch (plan.mode) {
    case FaultPlan::Mode::None:
        return false;
    case FaultPlan::Mode::Once:
        return plan.calls == 1;
    case FaultPlan::Mode::Always:
        return true;
    case FaultPlan::Mode::Random:
        return host::failsAtRandom(plan.seed, plan.calls, plan.oneIn);
    }
    return false;
}

void Environment::makeKey(std::map<std::string, Key>& hive, const std::string& path) {
    for (std::size_t end = 0; end != std::string::npos;) {
        end = path.find('\\', end + 1);
        Key& key = hive[path.substr(0, end)];
        if (key.generation == 0) {
            key.generation = nextGeneration++;
        }
    }
}

void Environment::makeFolder(const std::string& path) {
    for (std::size_t end = path.find('\\'); end != std::string::npos; end = path.find('\\', end + 1)) {
        folders.insert(path.substr(0, end));
    }
    folders.insert(path);
}

} // namespace brisk::model

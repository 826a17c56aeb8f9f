// Random steps against the whole service on a simulated Windows, beside a model of it.
//
//   model_test [--seconds S] [--seed N]    one world after another, of kWorldSteps steps each, from seed N on
//   model_test --steps M [--seed N]        one world of M steps
//
// On a difference, a crash or a world that does not end, the seed is printed and the steps are reduced to those that
// are needed.
#include "host/model/Landmarks.h"
#include "host/model/Reduction.h"
#include "host/model/World.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

using namespace brisk::model;

constexpr std::size_t kWorldSteps = 2000;
constexpr unsigned kWorldsPerProcess = 20;
// A run of so many steps must have met all landmarks.
constexpr unsigned long long kThoroughRun = 400'000;

struct Options {
    double seconds = 10;
    std::uint64_t seed = 1;
    std::size_t steps = 0; // 0: worlds of the usual length, one after another
};

Options readOptions(int count, char** arguments) {
    Options options;
    for (int i = 1; i < count; ++i) {
        const bool hasValue = i + 1 < count;
        if (hasValue && std::strcmp(arguments[i], "--seconds") == 0) {
            options.seconds = std::strtod(arguments[++i], nullptr);
        } else if (hasValue && std::strcmp(arguments[i], "--seed") == 0) {
            options.seed = std::strtoull(arguments[++i], nullptr, 10);
        } else if (hasValue && std::strcmp(arguments[i], "--steps") == 0) {
            options.steps = std::strtoull(arguments[++i], nullptr, 10);
        } else {
            std::fprintf(stderr, "usage: model_test [--seconds S | --steps N] [--seed N]\n");
            std::exit(2);
        }
    }
    return options;
}

int report(std::uint64_t seed, const std::vector<Step>& steps, const Verdict& verdict) {
    std::printf(
        "\nFAILED with seed %llu at step %zu:\n%s\n\nReplay: model_test --seed %llu --steps %zu\n\nReducing ...\n",
        static_cast<unsigned long long>(seed), verdict.step, verdict.text.c_str(),
        static_cast<unsigned long long>(seed), steps.size());
    std::fflush(stdout);
    const std::vector<Step> needed = reduce(seed, steps, verdict);
    std::printf("These %zu steps are enough:\n", needed.size());
    for (const Step& step : needed) {
        std::printf("  %s\n", describe(step).c_str());
    }
    std::printf("with:\n%s\n", runAlone(seed, needed).text.c_str());
    return 1;
}

} // namespace

int main(int count, char** arguments) {
    const Options options = readOptions(count, arguments);
    const auto begin = std::chrono::steady_clock::now();
    const auto elapsed = [begin] {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    };
    const std::size_t length = options.steps == 0 ? kWorldSteps : options.steps;
    std::uint64_t seed = options.seed;
    unsigned long long steps = 0;
    std::vector<std::string> missing = missingLandmarks();
    do {
        const unsigned worlds = options.steps == 0 ? kWorldsPerProcess : 1;
        if (const auto failed = runWorlds(seed, worlds, length, missing)) {
            const std::vector<Step> all = makeSteps(*failed, length);
            return report(*failed, all, runAlone(*failed, all));
        }
        seed += worlds;
        steps += worlds * length;
    } while (options.steps == 0 && elapsed() < options.seconds);
    std::printf("%llu steps in %llu worlds (seeds %llu to %llu), %.0f s, %.2f million steps a minute: no difference\n",
                steps, static_cast<unsigned long long>(seed - options.seed),
                static_cast<unsigned long long>(options.seed), static_cast<unsigned long long>(seed - 1), elapsed(),
                static_cast<double>(steps) / elapsed() * 60 / 1e6);
    if (steps >= kThoroughRun && !missing.empty()) {
        std::printf("FAILED: so many steps, and never met in the log:\n");
        for (const std::string& landmark : missing) {
            std::printf("  %s\n", landmark.c_str());
        }
        return 1;
    }
    return 0;
}

#include "host/model/Reduction.h"

#include "host/model/Landmarks.h"
#include "host/model/World.h"
#include "host/simulation/Files.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

namespace brisk::model {

namespace {

constexpr unsigned kSecondsPerWorld = 60;

struct Child {
    pid_t process;
    int output;
};

// The child's output goes to the pipe; it runs the task and exits with its result.
template <class Task>
Child start(const Task& task) {
    // The folder of the drives belongs to this process.
    host::onThisMachine("C:");
    std::fflush(stdout);
    int ends[2];
    if (pipe(ends) != 0) {
        std::perror("model_test: pipe");
        std::exit(2);
    }
    const pid_t process = fork();
    if (process == 0) {
        close(ends[0]);
        dup2(ends[1], STDOUT_FILENO);
        dup2(ends[1], STDERR_FILENO);
        close(ends[1]);
        std::exit(task());
    }
    close(ends[1]);
    return {process, ends[0]};
}

struct Result {
    bool failed;
    std::string output;
};

Result finish(const Child& child) {
    std::string output;
    char buffer[4096];
    for (ssize_t size = 0; (size = read(child.output, buffer, sizeof buffer)) > 0;) {
        output.append(buffer, static_cast<std::size_t>(size));
    }
    close(child.output);
    int status = 0;
    waitpid(child.process, &status, 0);
    if (WIFSIGNALED(status)) {
        output +=
            "ended by signal " + std::to_string(WTERMSIG(status)) + (WTERMSIG(status) == SIGALRM ? ": too long" : "");
    }
    return {!WIFEXITED(status) || WEXITSTATUS(status) != 0, output};
}

// Prints the difference, and where a crash found it.
int runWorld(std::uint64_t seed, const std::vector<Step>& steps) {
    alarm(kSecondsPerWorld);
    World world(seed, steps);
    const auto difference = world.run();
    if (difference) {
        std::printf("step %zu\n%s\n", difference->step, difference->text.c_str());
    }
    return difference ? 1 : 0;
}

} // namespace

std::optional<std::uint64_t> runWorlds(std::uint64_t firstSeed, unsigned worlds, std::size_t steps,
                                       std::vector<std::string>& missing) {
    const Result result = finish(start([=] {
        for (std::uint64_t seed = firstSeed; seed < firstSeed + worlds; ++seed) {
            std::printf("seed %llu\n", static_cast<unsigned long long>(seed));
            std::fflush(stdout);
            if (const int failed = runWorld(seed, makeSteps(seed, steps))) {
                return failed;
            }
        }
        for (const std::string& landmark : missingLandmarks()) {
            std::printf("missing %s\n", landmark.c_str());
        }
        return 0;
    }));
    if (!result.failed) {
        std::erase_if(missing, [&](const std::string& landmark) {
            return result.output.find("missing " + landmark + '\n') == std::string::npos;
        });
        return std::nullopt;
    }
    const std::size_t last = result.output.rfind("seed ");
    const std::uint64_t lastSeed = std::strtoull(result.output.c_str() + last + 5, nullptr, 10);
    // A leak shows only at the end of the process: then it is not the last world's but one before.
    for (std::uint64_t seed = lastSeed; seed > firstSeed; --seed) {
        if (runAlone(seed, makeSteps(seed, steps)).failed) {
            return seed;
        }
    }
    return firstSeed;
}

Verdict runAlone(std::uint64_t seed, const std::vector<Step>& steps) {
    const Result result = finish(start([&] { return runWorld(seed, steps); }));
    Verdict verdict{result.failed, steps.size(), result.output};
    if (result.output.starts_with("step ")) {
        verdict.step = std::strtoull(result.output.c_str() + 5, nullptr, 10);
        verdict.text = result.output.substr(result.output.find('\n') + 1);
    }
    return verdict;
}

std::vector<Step> reduce(std::uint64_t seed, const std::vector<Step>& steps, const Verdict& verdict) {
    std::vector<Step> needed = steps;
    needed.resize(std::min(steps.size(), verdict.step + 1));
    if (!runAlone(seed, needed).failed) {
        needed = steps;
    }
    for (std::size_t part = std::max<std::size_t>(needed.size() / 2, 1); part > 0; part /= 2) {
        for (std::size_t begin = 0; begin < needed.size();) {
            std::vector<Step> candidate = needed;
            const auto from = candidate.begin() + static_cast<std::ptrdiff_t>(begin);
            candidate.erase(from, from + static_cast<std::ptrdiff_t>(std::min(part, candidate.size() - begin)));
            if (runAlone(seed, candidate).failed) {
                needed = candidate;
            } else {
                begin += part;
            }
        }
    }
    return needed;
}

} // namespace brisk::model

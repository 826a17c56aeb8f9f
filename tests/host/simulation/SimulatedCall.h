// Every call of the simulated Windows goes through an object of its own, simulatedCall<Function>, at which a test
// counts it, makes it fail or puts itself in its place.
#pragma once

#include <cstdint>
#include <functional>
#include <mutex>
#include <type_traits>
#include <utility>
#include <vector>

#include <windows.h>

namespace brisk::host {

// One at a time: the models are plain data.
std::recursive_mutex& modelMutex();

class SimulatedCallBase {
public:
    SimulatedCallBase() { all().push_back(this); }
    SimulatedCallBase(const SimulatedCallBase&) = delete;
    SimulatedCallBase& operator=(const SimulatedCallBase&) = delete;

    // Calls made since the last reset, failed ones included.
    unsigned calls() const { return count; }
    virtual void reset() { count = 0; }

    static std::vector<SimulatedCallBase*>& all() {
        static std::vector<SimulatedCallBase*> calls;
        return calls;
    }
    // No call fails any more; all counts are zero.
    static void resetAll() {
        for (SimulatedCallBase* call : all()) {
            call->reset();
        }
    }

protected:
    ~SimulatedCallBase() = default;

    unsigned count = 0;
};

// Whether the call of that number fails, when one in `oneIn` does: the same for the same seed.
constexpr bool failsAtRandom(std::uint64_t seed, unsigned number, unsigned oneIn) {
    std::uint64_t mixed = seed + number * 0x9E3779B97F4A7C15u;
    mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9u;
    mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBu;
    return (mixed ^ (mixed >> 31)) % oneIn == 0;
}

template <class Function>
class SimulatedCall;

template <class Result, class... Arguments>
class SimulatedCall<Result(Arguments...)> final : public SimulatedCallBase {
public:
    using Function = Result(Arguments...);
    // What a failing call answers; of no account where there is no answer.
    using Failure = std::conditional_t<std::is_void_v<Result>, int, Result>;

    explicit SimulatedCall(Function* entryPoint) : function(entryPoint) {}

    // Every call fails with the result and last error, from the n-th on (1 is the next).
    void fail(Failure result, DWORD lastError = ERROR_SUCCESS, unsigned fromCall = 1) {
        const unsigned first = count + fromCall;
        failWhen(result, lastError, [first](unsigned number) { return number >= first; });
    }
    void failOnce(Failure result, DWORD lastError) {
        const unsigned next = count + 1;
        failWhen(result, lastError, [next](unsigned number) { return number == next; });
    }
    void failAtRandom(Failure result, DWORD lastError, std::uint64_t seed, unsigned oneIn) {
        failWhen(result, lastError, [=](unsigned number) { return failsAtRandom(seed, number, oneIn); });
    }

    // Every call goes to the hook, which may call real().
    void intercept(std::function<Result(Arguments...)> replacement) { hook = std::move(replacement); }

    // The model's own answer.
    Result real(Arguments... arguments) {
        bypassed = true;
        return function(arguments...);
    }

    void reset() override {
        SimulatedCallBase::reset();
        hook = nullptr;
    }

    template <class Model>
    Result call(const Model& model, Arguments... arguments) {
        if (std::exchange(bypassed, false)) {
            const std::lock_guard lock(modelMutex());
            return model();
        }
        std::unique_lock lock(modelMutex());
        ++count;
        if (!hook) {
            return model();
        }
        lock.unlock();
        return hook(arguments...);
    }

private:
    template <class When>
    void failWhen(Failure result, DWORD lastError, When when) {
        hook = [=, this](Arguments... arguments) -> Result {
            if (!when(count)) {
                return real(arguments...);
            }
            SetLastError(lastError);
            return static_cast<Result>(result);
        };
    }

    // Of the next call of this thread.
    static inline thread_local bool bypassed = false;

    Function* function;
    std::function<Result(Arguments...)> hook;
};

template <auto* Function>
inline SimulatedCall<std::remove_pointer_t<decltype(Function)>> simulatedCall{Function};

// For the body of a simulated function: the model's answer, unless a test has it otherwise.
template <auto* Function, class Model, class... Arguments>
auto simulate(const Model& model, Arguments... arguments) {
    return simulatedCall<Function>.call(model, arguments...);
}

} // namespace brisk::host

// Fault injection at the import table. A test program writes, in a header or in a source file, for a call it wants to
// fail
//
//   BRISK_FAULT_POINT("advapi32.dll", RegSetValueExA)
//
// which replaces that import for all the code the program links and gives the tests the object RegSetValueExAFault:
//
//   RegSetValueExAFault.fail(ERROR_ACCESS_DENIED);
//
// All rules end with reset().
#pragma once

#include <atomic>
#include <functional>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>

#include <windows.h>

#include <winternl.h>

extern "C" NTSTATUS NTAPI LdrGetProcedureAddress(PVOID module, PANSI_STRING name, ULONG ordinal, PVOID* address);

namespace brisk::faults {

// The runtime calls imports before the constructors of any source file have run, so a point needs none of its own: it
// is initialised as a constant, has no hook then and calls the function itself.
class FaultPointBase {
public:
    constexpr FaultPointBase(const char* library, const char* function)
        : libraryName(library), functionName(function) {}
    FaultPointBase(const FaultPointBase&) = delete;
    FaultPointBase& operator=(const FaultPointBase&) = delete;

    // Calls made since the last reset, failed ones included.
    unsigned calls() const { return count; }
    virtual void reset() { count = 0; }

    static void resetAll() {
        for (FaultPointBase* point = used; point; point = point->nextUsed) {
            point->reset();
        }
    }

protected:
    ~FaultPointBase() = default;

    // Threads may come here for the first time together.
    void enlist() {
        if (!isEnlisted.exchange(true)) {
            nextUsed = used;
            while (!used.compare_exchange_weak(nextUsed, this)) {
            }
        }
    }

    void countCall() {
        ++count;
        enlist();
    }

    // The function itself. Not through GetProcAddress, which may be a fault point.
    void* find() {
        if (!address) {
            ANSI_STRING name;
            RtlInitAnsiString(&name, functionName);
            void* found = nullptr;
            if (LdrGetProcedureAddress(LoadLibraryA(libraryName), &name, 0, &found) != 0) {
                throw std::runtime_error(std::string("no function ") + functionName + " in " + libraryName);
            }
            address = found;
        }
        return address;
    }

private:
    // Those that have been called or given a hook.
    static inline constinit std::atomic<FaultPointBase*> used = nullptr;

    const char* libraryName;
    const char* functionName;
    std::atomic<void*> address = nullptr;
    std::atomic<unsigned> count = 0;
    std::atomic<bool> isEnlisted = false;
    FaultPointBase* nextUsed = nullptr;
};

template <class Function>
class FaultPoint;

template <class Result, class... Arguments>
class FaultPoint<Result WINAPI(Arguments...)> final : public FaultPointBase {
public:
    using Function = Result WINAPI(Arguments...);
    using FaultPointBase::FaultPointBase;

    // Every call fails with the result and last error, from the n-th on (1 is the next). A function that answers an
    // error code gives it as its result.
    void fail(std::conditional_t<std::is_void_v<Result>, int, Result> result, DWORD lastError = ERROR_SUCCESS,
              unsigned fromCall = 1) {
        const unsigned first = calls() + fromCall;
        intercept([=, this](Arguments... arguments) -> Result {
            if (calls() < first) {
                return real(arguments...);
            }
            SetLastError(lastError);
            return result;
        });
    }

    // Every call goes to the hook, which may call real().
    void intercept(std::function<Result(Arguments...)> function) {
        enlist();
        if (!hook) {
            hook = new std::function<Result(Arguments...)>;
        }
        *hook = std::move(function);
    }

    Result real(Arguments... arguments) { return reinterpret_cast<Function*>(find())(arguments...); }

    Result call(Arguments... arguments) {
        countCall();
        return hook && *hook ? (*hook)(arguments...) : real(arguments...);
    }

    void reset() override {
        FaultPointBase::reset();
        if (hook) {
            *hook = nullptr;
        }
    }

private:
    // Never destroyed: threads may still call while the process ends.
    std::function<Result(Arguments...)>* hook = nullptr;
};

template <auto& Point, class Function>
struct Import;

template <auto& Point, class Result, class... Arguments>
struct Import<Point, Result WINAPI(Arguments...)> {
    static Result WINAPI call(Arguments... arguments) { return Point.call(arguments...); }
};

// No call fails any more; all counts are zero.
inline void reset() {
    FaultPointBase::resetAll();
}

} // namespace brisk::faults

// What an import library brings for a function: the pointer, through which functions declared as imported are called,
// and the jump through it, which the others are. With BRISK_IMPORT(Beep, &replaced) the linker finds both in the
// program, as if it said
//
//   BOOL(WINAPI* __imp_Beep)(DWORD, DWORD) = &replaced;      where code says: call *__imp_Beep(%rip)
//   Beep: jmp *__imp_Beep(%rip)                              where code says: call Beep
//
// and asks kernel32's import library for neither.
#define BRISK_IMPORT(function, replacement)                                                                            \
    extern "C" {                                                                                                       \
    [[gnu::used]] inline decltype(&::function) __imp_##function = replacement;                                         \
    }                                                                                                                  \
    asm(".section .text$jump_to_" #function ",\"x\"\n.linkonce discard\n.globl " #function "\n" #function              \
        ": jmp *__imp_" #function "(%rip)\n.text");

#define BRISK_FAULT_POINT(library, function)                                                                           \
    inline constinit brisk::faults::FaultPoint<decltype(::function)> function##Fault{library, #function};              \
    BRISK_IMPORT(function, (&brisk::faults::Import<function##Fault, decltype(::function)>::call))

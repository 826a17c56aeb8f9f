#include "OwnThread.h"

#include <memory>
#include <stdexcept>

#include <windows.h>

#include <process.h>

namespace brisk::standin {

namespace {

unsigned __stdcall run(void* body) {
    const std::unique_ptr<std::function<void()>> function(static_cast<std::function<void()>*>(body));
    (*function)();
    return 0;
}

} // namespace

// Not a detached std::thread: with the cross compiler's thread library, one that ends while the next is being started
// can leave that one without its function (seen as a call through null within some hundred short threads).
void startThread(std::function<void()> body) {
    auto function = std::make_unique<std::function<void()>>(std::move(body));
    const uintptr_t thread = _beginthreadex(nullptr, 0, run, function.get(), 0, nullptr);
    if (thread == 0) {
        throw std::runtime_error("a thread cannot be started");
    }
    static_cast<void>(function.release()); // the thread has it
    CloseHandle(reinterpret_cast<HANDLE>(thread));
}

} // namespace brisk::standin

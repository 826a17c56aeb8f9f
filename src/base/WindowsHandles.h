// Owners of Windows handles and COM references: released on every path, never copied.
#pragma once

#include <memory>
#include <utility>

#include <windows.h>

namespace brisk {

struct CloseHandleDeleter {
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};

// A kernel handle whose invalid value is null (processes, events).
using UniqueHandle = std::unique_ptr<void, CloseHandleDeleter>;

struct FindCloseDeleter {
    void operator()(HANDLE search) const { FindClose(search); }
};

// A directory search; FindFirstFileW's INVALID_HANDLE_VALUE must not be put in.
using UniqueFindHandle = std::unique_ptr<void, FindCloseDeleter>;

// An open registry key.
class RegistryKey {
public:
    RegistryKey() = default;
    RegistryKey(const RegistryKey&) = delete;
    RegistryKey& operator=(const RegistryKey&) = delete;
    ~RegistryKey() {
        if (key) {
            RegCloseKey(key);
        }
    }

    HKEY get() const { return key; }
    // For the call that opens the key; use once.
    HKEY* receive() { return &key; }

private:
    HKEY key = nullptr;
};

// A counted reference to a COM object.
template <class Interface>
class ComReference {
public:
    ComReference() = default;
    // Takes over a reference that the caller holds.
    explicit ComReference(Interface* owned) : object(owned) {}
    ComReference(const ComReference&) = delete;
    ComReference& operator=(const ComReference&) = delete;
    ComReference(ComReference&& other) noexcept : object(std::exchange(other.object, nullptr)) {}
    ComReference& operator=(ComReference&& other) noexcept {
        std::swap(object, other.object);
        return *this;
    }
    ~ComReference() {
        if (object) {
            object->Release();
        }
    }

    Interface* get() const { return object; }
    Interface* operator->() const { return object; }
    explicit operator bool() const { return object != nullptr; }
    // For the call that fills the reference in; use once.
    Interface** receive() { return &object; }
    void** receiveVoid() { return reinterpret_cast<void**>(&object); }

private:
    Interface* object = nullptr;
};

} // namespace brisk

#pragma once

#include <functional>
#include <memory>
#include <string>

#include "ToastContent.h"
#include "base/WindowsHandles.h"

namespace brisk::standin {

// What a click does; called on the window's thread. The number counts for buttons only.
struct ToastReactions {
    std::function<void(size_t)> button;
    std::function<void(size_t)> body;
    std::function<void(size_t)> close;
};

// A toast drawn as a top-most window above the lower right corner of the primary display's work area (above the toasts
// that are there already), on a thread of its own. It never becomes the foreground window. Where its parts stand is
// written to the record once it is drawn.
class ToastWindow {
public:
    ToastWindow(unsigned number, const std::shared_ptr<const ToastContent>& content, const std::wstring& application,
                ToastReactions reactions);
    ToastWindow(const ToastWindow&) = delete;
    ToastWindow& operator=(const ToastWindow&) = delete;
    // Has the window closed; does not wait for it.
    ~ToastWindow();

private:
    std::shared_ptr<UniqueHandle> closeRequest;
};

} // namespace brisk::standin

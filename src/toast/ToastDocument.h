#pragma once

#include "toast/ToastTemplate.h"

#include <optional>

namespace WinToastLib {

// The toast's XML. A body of one line is one text; a body of several lines is pairs of a base and a subtle line, three
// pairs a group. Button k carries the arguments "k", from 0. Nothing, with a log line, for an odd number of lines.
std::optional<std::wstring> buildToastDocument(const ToastTemplate& toast);

} // namespace WinToastLib

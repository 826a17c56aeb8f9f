#pragma once

namespace brisk::logbook {

// Exit codes of `why` and `report`.
inline constexpr int kOffered = 0;
inline constexpr int kNotOffered = 1;
inline constexpr int kUnreadable = 2; // or unwritable
inline constexpr int kNoSession = 3;

} // namespace brisk::logbook

#pragma once

namespace brisk {

// The service's version, as the log's start line and the notification identity show it. The version resource in
// brisk.rc and brisk.manifest carry the same number.
inline constexpr char kVersion[] = "1.09";

} // namespace brisk

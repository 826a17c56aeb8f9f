#pragma once

#include "tools/titles/BoundedBytes.h"

#include <optional>

namespace brisk::workbench {

// The version resource of a 32-bit or 64-bit Windows executable; nothing when it has none. Throws ExecutableError.
std::optional<BoundedBytes> findVersionResource(const BoundedBytes& executable);

} // namespace brisk::workbench

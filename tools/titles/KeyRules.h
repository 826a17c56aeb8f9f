#pragma once

#include "tools/titles/Report.h"

namespace brisk::workbench {

// What the title database may hold, key by key: unknown and repeated keys, wrong types, numbers that the service cuts
// and keys without which a title cannot work. The element is one of the database's array.
void checkKeys(const JsonValue& title, Report& report);

} // namespace brisk::workbench

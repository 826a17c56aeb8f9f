#pragma once

#include "titles/TitleConfigAdapter.h"

namespace brisk {

// Whether the loaded configuration meets all of the title's conditions. A forbidden value ends the check at once; a
// missing setting is logged and the remaining conditions are still looked at.
bool meetsConditions(TitleConfigAdapter& title);

} // namespace brisk

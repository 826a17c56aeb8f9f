// As much of Windows as Brisk and its tests use, served by the models in tests/host/simulation/.
#pragma once

#include "winbase.h"
#include "windef.h"
#include "winreg.h"
#include "winuser.h"
#include "winver.h"

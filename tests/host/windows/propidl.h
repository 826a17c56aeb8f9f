#pragma once

#include "inspectable.h"

struct PROPVARIANT;
using REFPROPVARIANT = const PROPVARIANT&;

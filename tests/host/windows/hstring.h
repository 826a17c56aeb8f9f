#pragma once

using HSTRING = struct HSTRING__*;
struct HSTRING_HEADER;

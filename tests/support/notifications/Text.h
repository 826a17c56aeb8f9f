// Text between the three forms the stand-in meets: HSTRING, UTF-16 and UTF-8.
#pragma once

#include <string>
#include <string_view>

#include <windows.h>

#include <hstring.h>

namespace brisk::standin {

std::string toUtf8(std::wstring_view text);
std::wstring fromUtf8(std::string_view text);
std::wstring fromHString(HSTRING text);
// The text as one line of the record holds it, in UTF-8.
std::string escaped(std::wstring_view text);
// "0x" and eight digits.
std::string hresultText(HRESULT result);
// Empty where the variable is not set.
std::wstring environmentVariable(const wchar_t* name);

} // namespace brisk::standin

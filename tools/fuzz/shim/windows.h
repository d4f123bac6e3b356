// The handful of Windows types and functions that the plug-in's pure sources use, for building them on
// another system with its sanitizers. Characters are two bytes wide there as well (-fshort-wchar).
#pragma once

#include <cstdint>

static_assert(sizeof(wchar_t) == 2);

using BOOL = int;
using UINT = unsigned;
using DWORD = std::uint32_t;
using PWSTR = wchar_t*;
using PCWSTR = const wchar_t*;

inline constexpr UINT CP_ACP = 0;
inline constexpr DWORD WC_NO_BEST_FIT_CHARS = 0x400;
int WideCharToMultiByte(UINT codePage, DWORD flags, PCWSTR text, int length, char* bytes, int room,
                        const char* missing, BOOL* usedMissing);
int wsprintfW(PWSTR text, PCWSTR format, unsigned value);

// The handful of Windows types and functions that the plug-in's pure sources use, for building them on
// another system with its sanitizers. Characters are two bytes wide there as well (-fshort-wchar).
#pragma once

#include <cstddef>
#include <cstdint>

static_assert(sizeof(wchar_t) == 2);

using BYTE = std::uint8_t;
using BOOL = int;
inline constexpr BOOL TRUE = 1;
using UINT = unsigned;
using DWORD = std::uint32_t;
using LONG = std::int32_t;
using LPARAM = std::intptr_t;
using HRESULT = std::int32_t;
using WCHAR = wchar_t;
using PWSTR = wchar_t*;
using PCWSTR = const wchar_t*;
using HDC = struct HDC__*;

#define CALLBACK
#define WINAPI

inline constexpr HRESULT E_FAIL = static_cast<HRESULT>(0x80004005);
inline constexpr HRESULT E_OUTOFMEMORY = static_cast<HRESULT>(0x8007000E);
inline constexpr int LF_FACESIZE = 32;

struct LOGFONTW {
    WCHAR lfFaceName[LF_FACESIZE];
};
struct TEXTMETRICW;
using FONTENUMPROCW = int(CALLBACK*)(const LOGFONTW*, const TEXTMETRICW*, DWORD, LPARAM);
int EnumFontFamiliesW(HDC device, PCWSTR family, FONTENUMPROCW found, LPARAM parameter);

inline constexpr UINT CP_ACP = 0;
inline constexpr DWORD WC_NO_BEST_FIT_CHARS = 0x400;
int WideCharToMultiByte(UINT codePage, DWORD flags, PCWSTR text, int length, char* bytes, int room,
                        const char* missing, BOOL* usedMissing);

int lstrcmpiW(PCWSTR left, PCWSTR right);
inline constexpr int CSTR_EQUAL = 2;
int CompareStringOrdinal(PCWSTR left, int leftLength, PCWSTR right, int rightLength, BOOL ignoreCase);
int wsprintfW(PWSTR text, PCWSTR format, ...);

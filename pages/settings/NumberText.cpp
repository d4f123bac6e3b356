#include "pages/settings/NumberText.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstring>

#include "support/Decimal.h"

namespace kzp {

namespace {

constexpr size_t kDecimals = 2;
constexpr double kSpinStep = 0.05;

bool IsDigit(int character) {
    return character >= '0' && character <= '9';
}

void WriteWhole(unsigned value, NumberText& text) {
    wsprintfW(text, L"%u", value);
}

}  // namespace

double MillimetersPerUnit(DWORD unit) {
    return unit == kInches ? 25.4 : 1.0;
}

void FormatTwoDecimals(double value, NumberText& text) {
    // Without the sign, deliberately: a negative value is shown as a positive one.
    char digits[kMostHundredthsDigits];
    wchar_t* out = text;
    for (size_t left = HundredthsOf(value, digits); left-- > 0;) {
        if (left == kDecimals - 1)
            *out++ = L'.';
        *out++ = static_cast<wchar_t>(digits[left]);
    }
    out[0] = out[1] = L'\0';
}

double RoundToHundredths(double value) {
    const double hundredths = value * 100;
    const double up = std::ceil(hundredths);
    const double beyondHalf = up - hundredths - 0.5;
    if (beyondHalf > 0.05)
        return std::floor(hundredths) / 100;
    if (beyondHalf < -0.05 || value > 0)
        return up / 100;
    return std::floor(hundredths) / 100;
}

void ToAnsi(const wchar_t* text, AnsiNumberText& ansi) {
    const auto convert = [&](DWORD flags) {
        return WideCharToMultiByte(CP_ACP, flags, text, -1, ansi, sizeof ansi, nullptr, nullptr) != 0;
    };
    // Machines whose ANSI code page is UTF-8 refuse the flag, and have no best fit to be kept from.
    if (!convert(WC_NO_BEST_FIT_CHARS) && !convert(0))
        ansi[0] = '\0';
}

float ParseNumber(const char* text) {
    return static_cast<float>(std::clamp<double>(ReadDecimal(text), -FLT_MAX, FLT_MAX));
}

float ParseNumber(const wchar_t* text) {
    AnsiNumberText ansi;
    ToAnsi(text, ansi);
    return ParseNumber(ansi);
}

bool FilterPass(char* text) {
    bool removed = false;
    bool point = false;
    for (size_t at = 0; text[at]; ++at) {
        const bool isPoint = text[at] == '.';
        if (isPoint ? text[0] != '.' && !point : IsDigit(text[at])) {
            point = point || isPoint;
            continue;
        }
        std::memmove(text + at, text + at + 1, std::strlen(text + at));
        removed = true;
        if (!text[at])
            break;
    }
    return removed;
}

float LargestTyped(DWORD unit) {
    return unit == kInches ? 100.0f : 2540.0f;
}

bool IsValidNumber(const wchar_t* text, unsigned minimum) {
    if (!*text)
        return minimum == 0;
    bool point = false;
    for (const wchar_t* at = text; *at; ++at) {
        if (*at == L'.' && !point)
            point = true;
        else if (!IsDigit(*at) && !(*at == L'+' && at == text))
            return false;
    }
    return ReadDecimal(text) >= minimum;
}

void StepTextUp(const wchar_t* text, unsigned minimum, NumberText& stepped) {
    if (IsValidNumber(text, minimum))
        FormatTwoDecimals(ReadDecimal(text) + kSpinStep, stepped);
    else
        WriteWhole(minimum, stepped);
}

void StepTextDown(const wchar_t* text, unsigned minimum, NumberText& stepped) {
    if (IsValidNumber(text, minimum) && ReadDecimal(text) > minimum + kSpinStep)
        FormatTwoDecimals(ReadDecimal(text) - kSpinStep, stepped);
    else
        WriteWhole(minimum, stepped);
}

float ConvertLength(float value, DWORD from, DWORD to) {
    if (from == to)
        return value;
    return to == kMillimeters ? value * 254.0f / 10.0f : value * 10.0f / 254.0f;
}

}  // namespace kzp

#include "pages/settings/NumberText.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstdlib>
#include <cstring>

namespace kzp {

namespace {

constexpr int kDecimals = 2;
constexpr double kSpinStep = 0.05;

bool IsDigit(int character) {
    return character >= '0' && character <= '9';
}

// The digits of a rounded fixed-point number; the first `point` of them stand before the point, and a
// negative `point` counts zeros that follow it.
struct FixedDigits {
    char digits[256] = "";
    int point = 0;
};

FixedDigits DigitsOf(double value) {
    FixedDigits fixed;
    int sign = 0;  // deliberately not looked at: a negative value is shown without its minus sign
    // The run-time ends the process over a number that does not fit its buffer.
    if (!(std::fabs(value) <= FLT_MAX) ||
        _fcvt_s(fixed.digits, sizeof fixed.digits, value, kDecimals, &fixed.point, &sign) != 0)
        return {};
    return fixed;
}

void WriteWhole(unsigned value, NumberText& text) {
    wsprintfW(text, L"%u", value);
}

}  // namespace

double MillimetersPerUnit(DWORD unit) {
    return unit == kInches ? 25.4 : 1.0;
}

void FormatTwoDecimals(double value, NumberText& text) {
    const FixedDigits fixed = DigitsOf(value);
    const char* digit = fixed.digits;
    wchar_t* out = text;
    for (int left = fixed.point; left > 0 && *digit; --left)
        *out++ = static_cast<wchar_t>(*digit++);
    if (out == text)
        *out++ = L'0';
    *out++ = L'.';
    // Counted, because run-times differ in how many digits they report for numbers next to nothing.
    int zeros = std::max(0, -fixed.point);
    for (int decimal = 0; decimal < kDecimals; ++decimal)
        *out++ = zeros-- > 0 || !*digit ? L'0' : static_cast<wchar_t>(*digit++);
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
    return static_cast<float>(std::clamp<double>(std::atof(text), -FLT_MAX, FLT_MAX));
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
    return _wtof(text) >= minimum;
}

void StepTextUp(const wchar_t* text, unsigned minimum, NumberText& stepped) {
    if (IsValidNumber(text, minimum))
        FormatTwoDecimals(_wtof(text) + kSpinStep, stepped);
    else
        WriteWhole(minimum, stepped);
}

void StepTextDown(const wchar_t* text, unsigned minimum, NumberText& stepped) {
    if (IsValidNumber(text, minimum) && _wtof(text) > minimum + kSpinStep)
        FormatTwoDecimals(_wtof(text) - kSpinStep, stepped);
    else
        WriteWhole(minimum, stepped);
}

float ConvertLength(float value, DWORD from, DWORD to) {
    if (from == to)
        return value;
    return to == kMillimeters ? value * 254.0f / 10.0f : value * 10.0f / 254.0f;
}

}  // namespace kzp

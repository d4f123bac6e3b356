// Numbers as the settings page writes and reads them: pure functions on texts and values, without a window.
// The point is a point in every language.
#pragma once

#include <windows.h>

namespace kzp {

// Longest text of an edit or a state buffer, terminator included.
inline constexpr int kNumberChars = 260;
using NumberText = wchar_t[kNumberChars];

// In the ANSI code page a character takes up to three bytes.
using AnsiNumberText = char[3 * kNumberChars];

// The page's unit, in the numbering of the driver's option "CustomUnit".
inline constexpr DWORD kInches = 0;
inline constexpr DWORD kMillimeters = 1;

// Millimetres of one page unit, for what the spooler and the private record hold in millimetres.
double MillimetersPerUnit(DWORD unit);

// Writes `value` with exactly two digits after the point, rounded (a half away from zero), without the sign
// of a negative value; two zeros end the text. What single precision cannot hold reads "0.00".
void FormatTwoDecimals(double value, NumberText& text);

// Rounds to two decimals, away from zero already from 0.45 of a hundredth on. The tolerance band is
// deliberate; this is not ordinary rounding.
double RoundToHundredths(double value);

// The text in the ANSI code page; empty when it cannot be converted. A character that the code page lacks
// does not turn into a digit that looks alike.
void ToAnsi(const wchar_t* text, AnsiNumberText& ansi);

// Value of the number that the text begins with, 0 without one; at most what a float holds.
float ParseNumber(const char* text);
float ParseNumber(const wchar_t* text);

// One pass of the keystroke filter: takes out what is neither a digit nor a point, a leading point, and every
// point behind the first one kept. Answers whether it took something out. The pass steps over the character
// that slides into a gap, so it may leave some; repeated until it answers false, the text is clean.
bool FilterPass(char* text);

// Largest value that may be typed: 100 inches or 2540 millimetres.
float LargestTyped(DWORD unit);

// Digits with at most one point and an optional leading "+", not below `minimum`. The empty text counts when
// `minimum` is 0.
bool IsValidNumber(const wchar_t* text, unsigned minimum);

// What a click on a spin button makes of a text: 0.05 more or less in whatever unit is shown, or `minimum` as
// a whole number when the text is invalid or the step down would not stay above it.
void StepTextUp(const wchar_t* text, unsigned minimum, NumberText& stepped);
void StepTextDown(const wchar_t* text, unsigned minimum, NumberText& stepped);

// Single precision, multiplied before divided: 254 / 10 and 10 / 254.
float ConvertLength(float value, DWORD from, DWORD to);

}  // namespace kzp

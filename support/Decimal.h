// Decimal numbers in whole-number arithmetic: neither the locale of the run-time that the host shares with us
// nor its floating-point modes have a say.
#pragma once

#include <cstddef>

namespace kzp {

// Value of the number that `text` begins with, as the run-time's atof in the "C" locale: white space, a sign,
// digits with one point, an exponent; 0 without a digit. Rounded correctly, a tie to even. Below 1e-300 it is
// 0; beyond what a double holds it is infinite.
double ReadDecimal(const char* text);
double ReadDecimal(const wchar_t* text);

// The hundredths of a finite number without its sign, rounded by its exact value, a tie away from zero: their
// decimal digits, the last one first, at least three. Answers how many. What a float cannot hold counts as 0.
inline constexpr size_t kMostHundredthsDigits = 41;
size_t HundredthsOf(double value, char (&digits)[kMostHundredthsDigits]);

}  // namespace kzp

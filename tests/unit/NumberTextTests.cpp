// The settings page's numbers: how they are written, read, rounded, stepped and converted.
#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <string>
#include <vector>

#include "pages/settings/NumberText.h"

namespace kzp {
namespace {

TEST(NumbersAreWritten, WithTwoDecimalsAndNoSignWithinTheirBuffers) {
    const std::pair<double, const wchar_t*> cases[] = {
        {0.0004, L"0.00"},
        {0.996, L"1.00"},
        {0.125, L"0.13"},
        {-3.25, L"3.25"},
        {2147483.647, L"2147483.65"},
        {FLT_MAX, L"340282346638528859811704183484516925440.00"},
        {-DBL_MAX, L"0.00"},
        {std::nan(""), L"0.00"},
    };
    for (const auto& [value, expected] : cases) {
        NumberText text;
        FormatTwoDecimals(value, text);
        EXPECT_STREQ(expected, text);
    }
}

TEST(Rounding, GoesAwayFromZeroFromTheToleranceBandOn) {
    for (const auto& [value, rounded] : {std::pair{1.0046, 1.01}, {1.0044, 1.00}, {1.25, 1.25}, {0.001, 0.0}})
        EXPECT_DOUBLE_EQ(rounded, RoundToHundredths(value)) << value;
}

TEST(NumbersAreRead, AsTheRunTimeDoesInEnglish) {
    std::vector<std::string> texts = {"",     ".",    "..5",  "5.",    "+5",    "-5",  "+",    "e5",   "1e5",
                                      "1d-2", "1e+",  "2E3x", "1e400", "1e-99", " 7",  "\t.5", "1 2",  "1,5",
                                      "0x10", "1e--", "nan",  "inf",   "+-1",   "-.0", "1.e1", "08.50"};
    for (const char digit : {'9', '0', '1'}) {
        for (const size_t length : {5u, 9u, 15u, 60u, 129u}) {
            const std::string digits(length, digit), fraction = "." + digits;
            texts.insert(texts.end(), {digits + digits, digits + fraction, fraction});
        }
    }
    // Half way between two values of single precision, and next to it; then of double precision.
    for (const char* const tie :
         {"16777217.", "33554434.0", "1.000000059604644775390625", "9007199254740993."}) {
        for (const char* const tail : {"", "00000000000000000000000", "0000000000000000000001"})
            texts.push_back(std::string(tie) + tail);
    }
    for (int hundredths = 0; hundredths <= 999999; ++hundredths) {
        const std::string digits = std::to_string(hundredths + 100);
        texts.push_back(std::to_string(hundredths / 100) + "." + digits.substr(digits.size() - 2));
    }
    for (const std::string& text : texts) {
        const double expected = std::clamp<double>(std::atof(text.c_str()), -FLT_MAX, FLT_MAX);
        ASSERT_EQ(static_cast<float>(expected), ParseNumber(text.c_str())) << text;
    }
    ASSERT_NE(nullptr, std::setlocale(LC_ALL, "German_Germany.1252"));
    EXPECT_EQ(ParseNumber("8.50"), 8.5f) << "where the run-time's own functions stop at the point";
    std::setlocale(LC_ALL, "C");
}

TEST(SpinButtons, StepByAFifthOfAQuarterAndStopAtTheFloor) {
    const std::wstring longest(255, L'9');
    const struct {
        const wchar_t *text, *up, *down;
    } cases[] = {
        {L"8.5", L"8.55", L"8.45"},
        {L"", L"0.05", L"0"},
        {L"0.03", L"0.08", L"0"},
        {L"0.1", L"0.15", L"0.05"},
        {L"+.5", L"0.55", L"0.45"},
        {L"-5", L"0", L"0"},
        {L"1+1", L"0", L"0"},
        {L"1.2.3", L"0", L"0"},
        {L"1e3", L"0", L"0"},
        {L"\x0661", L"0", L"0"},
        {longest.c_str(), L"0.00", L"0.00"},  // what no edit can mean must not break the formatting
    };
    for (const auto& [text, up, down] : cases) {
        NumberText stepped;
        StepTextUp(text, 0, stepped);
        EXPECT_STREQ(stepped, up);
        StepTextDown(text, 0, stepped);
        EXPECT_STREQ(stepped, down);
    }
}

// What the page does when the unit is switched and switched back: convert, show, read, convert, show.
TEST(UnitConversion, ThereAndBackGivesTheSameInches) {
    for (int hundredths = 0; hundredths <= 10000; ++hundredths) {
        NumberText inches, millimeters, back;
        FormatTwoDecimals(hundredths / 100.0, inches);
        FormatTwoDecimals(ConvertLength(ParseNumber(inches), kInches, kMillimeters), millimeters);
        FormatTwoDecimals(ConvertLength(ParseNumber(millimeters), kMillimeters, kInches), back);
        ASSERT_STREQ(back, inches);
    }
}

}  // namespace
}  // namespace kzp

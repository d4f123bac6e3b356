// The settings page's numbers: how they are written, filtered, checked, stepped and converted.
#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <limits>
#include <string>
#include <tuple>
#include <vector>

#include "pages/settings/NumberText.h"
#include "tests/support/ImportPatch.h"

namespace kzp {
namespace {

TEST(NumbersAreWritten, WithTwoDecimalsAndNoSignWithinTheirBuffers) {
    const std::pair<double, const wchar_t*> cases[] = {
        {0, L"0.00"},
        {0.0004, L"0.00"},
        {0.006, L"0.01"},
        {0.05, L"0.05"},
        {0.1, L"0.10"},
        {0.996, L"1.00"},
        {8.5, L"8.50"},
        {99.999, L"100.00"},
        {2147483.647, L"2147483.65"},
        {0.125, L"0.13"},
        {-3.25, L"3.25"},
        {FLT_MAX, L"340282346638528859811704183484516925440.00"},
        {1e39, L"0.00"},
        {-DBL_MAX, L"0.00"},
        {std::numeric_limits<double>::infinity(), L"0.00"},
        {std::nan(""), L"0.00"},
    };
    for (const auto& [value, expected] : cases) {
        NumberText text;
        std::fill(std::begin(text), std::end(text), L'#');
        FormatTwoDecimals(value, text);
        EXPECT_STREQ(expected, text);
        EXPECT_EQ(L'\0', text[std::wcslen(text) + 1]) << value;
    }
}

TEST(Rounding, GoesAwayFromZeroFromTheToleranceBandOn) {
    const std::pair<double, double> cases[] = {{1.0046, 1.01}, {1.0044, 1.00},   {1.005, 1.01},
                                               {1.25, 1.25},   {-1.0046, -1.01}, {-1.0044, -1.00},
                                               {0.001, 0}};
    for (const auto& [value, rounded] : cases)
        EXPECT_DOUBLE_EQ(rounded, RoundToHundredths(value)) << value;
}

TEST(KeystrokeFilter, StepsOverWhatSlidesIntoAGap) {
    const std::tuple<std::string, const char*, bool> cases[] = {
        {"ab1", "b1", true}, {"..5", ".5", true}, {"1..", "1.", true}, {"1.5", "1.5", false}};
    for (auto [text, left, removed] : cases) {
        EXPECT_EQ(removed, FilterPass(text.data()));
        EXPECT_STREQ(left, text.c_str());
    }
}

decltype(&WideCharToMultiByte) g_convert = nullptr;
DWORD g_refusedFlags = 0;

int WINAPI ConvertToUtf8(UINT, DWORD flags, LPCWSTR text, int characters, LPSTR ansi, int bytes,
                         LPCSTR lacking, LPBOOL lacked) {
    g_refusedFlags |= flags;
    return flags != 0 ? 0 : g_convert(CP_UTF8, 0, text, characters, ansi, bytes, lacking, lacked);
}

TEST(NumbersAreRead, WithoutLookAlikeDigitsAndNeverTooLarge) {
    EXPECT_EQ(ParseNumber(L"12x"), 12.0f);
    EXPECT_EQ(ParseNumber(L"\xFF11\xFF12"), 0.0f);
    EXPECT_EQ(ParseNumber(std::wstring(kNumberChars - 1, L'9').c_str()), FLT_MAX);
    const test::ImportPatch utf8(GetModuleHandleW(nullptr), "WideCharToMultiByte",
                                 test::AddressOf(ConvertToUtf8));
    g_convert = utf8.Original<decltype(g_convert)>();
    EXPECT_EQ(ParseNumber(L"8.50"), 8.5f) << "in a program whose ANSI code page is UTF-8";
    EXPECT_EQ(DWORD{WC_NO_BEST_FIT_CHARS}, g_refusedFlags);
}

// In a program of another language the run-time's own functions would stop at the point.
TEST(NumbersAreRead, AsTheRunTimeDoesInEnglishAndInEveryOtherLanguage) {
    std::vector<std::string> texts = {"",     ".",    "..5",  "5.",    "+5",    "-5",  "+",    "e5",   "1e5",
                                      "1d-2", "1e+",  "2E3x", "1e400", "1e-99", " 7",  "\t.5", "1 2",  "1,5",
                                      "0x10", "1e--", "nan",  "inf",   "+-1",   "-.0", "1.e1", "08.50"};
    for (const char* const digits : {"9999999999", "0000000000", "1234567891"}) {
        std::string text;
        while (text.size() < 260)
            text += digits;
        for (const size_t length : {9u, 17u, 18u, 30u, 120u, 258u}) {
            const std::string half = text.substr(0, length / 2);
            texts.insert(texts.end(), {text.substr(0, length), half + "." + half, "." + half + half});
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
    std::vector<float> expected;
    for (const std::string& text : texts)
        expected.push_back(
            static_cast<float>(std::clamp<double>(std::atof(text.c_str()), -FLT_MAX, FLT_MAX)));
    ASSERT_NE(nullptr, std::setlocale(LC_ALL, "German_Germany.1252"));
    ASSERT_EQ(8.0, std::atof("8.50"));
    for (size_t each = 0; each < texts.size(); ++each)
        ASSERT_EQ(expected[each], ParseNumber(texts[each].c_str())) << texts[each];
    std::setlocale(LC_ALL, "C");
}

TEST(NumbersAreChecked, CharacterByCharacterAndAgainstTheMinimum) {
    const std::tuple<const wchar_t*, unsigned, bool> cases[] = {
        {L"0", 0, true},       {L"+1.5", 0, true}, {L"1.", 0, true},    {L".5", 0, true},
        {L"08.50", 0, true},   {L"", 0, true},     {L"-1", 0, false},   {L"1+1", 0, false},
        {L"1.2.3", 0, false},  {L"1,5", 0, false}, {L"1 ", 0, false},   {L"1e3", 0, false},
        {L"\x0661", 0, false}, {L"2", 2, true},    {L"1.99", 2, false}, {L"", 1, false},
    };
    for (const auto& [text, minimum, valid] : cases)
        EXPECT_EQ(valid, IsValidNumber(text, minimum)) << testing::PrintToString(text);
}

TEST(SpinButtons, StepByAFifthOfAQuarterAndStopAtTheFloor) {
    const std::wstring longest(255, L'9');
    const struct {
        const wchar_t *text, *up, *down;
        unsigned minimum = 0;
    } cases[] = {
        {L"8.5", L"8.55", L"8.45"},
        {L"", L"0.05", L"0"},
        {L"0.03", L"0.08", L"0"},
        {L"0.04", L"0.09", L"0"},
        {L"0.1", L"0.15", L"0.05"},
        {L"abc", L"0", L"0"},
        {L"-5", L"0", L"0"},
        {L"x", L"7", L"7", 7},
        {L"7.05", L"7.10", L"7", 7},
        {longest.c_str(), L"0.00", L"0.00"},  // what no edit can mean must not break the formatting
    };
    for (const auto& [text, up, down, minimum] : cases) {
        NumberText stepped;
        StepTextUp(text, minimum, stepped);
        EXPECT_STREQ(stepped, up);
        StepTextDown(text, minimum, stepped);
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
        ASSERT_STREQ(back, inches) << "through " << std::wstring(millimeters).size();
    }
    EXPECT_EQ(ConvertLength(8.5f, kMillimeters, kMillimeters), 8.5f);
}

}  // namespace
}  // namespace kzp

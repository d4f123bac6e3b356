// Texts and values of the settings page's numbers.
#include <cmath>
#include <memory>

#include "pages/settings/NumberText.h"
#include "tools/fuzz/Input.h"

using namespace kzp;
using kzp::fuzz::Expect;

namespace {

size_t LengthOf(const NumberText& text) {
    size_t length = 0;
    while (length < kNumberChars && text[length])
        ++length;
    Expect(length < kNumberChars, "the text ends inside its buffer");
    return length;
}

void FilterUntilClean(const wchar_t* typed) {
    AnsiNumberText ansi;
    ToAnsi(typed, ansi);
    // In a block of its own length: one byte too many is seen.
    const size_t bytes = std::strlen(ansi) + 1;
    const std::unique_ptr<char[]> text(new char[bytes]);
    std::memcpy(text.get(), ansi, bytes);
    size_t passes = 0;
    while (FilterPass(text.get()))
        Expect(++passes <= bytes, "the filter comes to an end");
    std::string digits = ansi, left = text.get();
    std::erase_if(digits, [](char one) { return one < '0' || one > '9'; });
    const size_t points = std::erase(left, '.');
    Expect(points <= 1 && text[0] != '.', "one point, not in front");
    Expect(left == digits, "beside it all digits in their order, and nothing else");
    const float value = ParseNumber(text.get());
    Expect(value >= 0 && std::isfinite(value), "a clean text is a number");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    const auto value = input.Take<double>();
    const auto number = input.Take<float>();
    const std::wstring typed = input.TakeText(kNumberChars - 1);
    const std::wstring text = typed.c_str();

    NumberText shown;
    FormatTwoDecimals(value, shown);
    const size_t length = LengthOf(shown);
    Expect(length >= 4 && shown[length - 3] == L'.' && !shown[length + 1],
           "two digits behind the point, two zeros");
    if (std::fabs(value) < 1e6)
        Expect(std::fabs(ParseNumber(shown) - std::fabs(value)) < 0.06, "what is shown is what was meant");

    (void)RoundToHundredths(number);
    for (const DWORD unit : {kInches, kMillimeters})
        (void)ConvertLength(number, unit, unit == kInches ? kMillimeters : kInches);

    FilterUntilClean(text.c_str());
    for (const unsigned minimum : {0u, 1u, 25u}) {
        for (const auto step : {StepTextUp, StepTextDown}) {
            NumberText stepped;
            step(text.c_str(), minimum, stepped);
            LengthOf(stepped);
            Expect(IsValidNumber(stepped, 0), "a step leads to a number");
        }
    }
    return 0;
}

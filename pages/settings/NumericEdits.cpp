#include "pages/settings/NumericEdits.h"

#include <algorithm>
#include <cfloat>
#include <cstring>
#include <iterator>

#include "resources/resource.h"

namespace kzp {

namespace {

constexpr int kNoMargin = -1;

// Steps read no more of an edit.
constexpr int kStepCharacters = 256;

struct NumericEdit {
    int control;
    int spin;
    int margin;  // or kNoMargin, and then
    NumberText PageMeasureState::* text;
    float PageMeasureState::* value;
};

constexpr NumericEdit kEdits[] = {
    {IDC_WIDTH, IDC_WIDTH_SPIN, kNoMargin, &PageMeasureState::widthText, &PageMeasureState::customWidth},
    {IDC_HEIGHT, IDC_HEIGHT_SPIN, kNoMargin, &PageMeasureState::heightText, &PageMeasureState::customHeight},
    {IDC_LEFT, IDC_LEFT_SPIN, kLeft, nullptr, nullptr},
    {IDC_RIGHT, IDC_RIGHT_SPIN, kRight, nullptr, nullptr},
    {IDC_TOP, IDC_TOP_SPIN, kTop, nullptr, nullptr},
    {IDC_BOTTOM, IDC_BOTTOM_SPIN, kBottom, nullptr, nullptr},
};

NumberText& TextOf(PageMeasureState& measures, const NumericEdit& edit) {
    return edit.margin == kNoMargin ? measures.*edit.text : measures.marginText[edit.margin];
}

void StoreMargin(PageMeasureState& measures, int margin, float value) {
    measures.typedMargin[margin] = measures.checkedMargin[margin] = value;
    measures.recordMargin[margin] = false;
}

void Store(PageMeasureState& measures, const NumericEdit& edit, const char* text) {
    // An edit's text may be longer in bytes than the state's buffer in characters until it is clean.
    const size_t length = std::min<size_t>(std::strlen(text), kNumberChars - 1);
    *std::copy_n(text, length, TextOf(measures, edit)) = L'\0';
    const float value = ParseNumber(text);
    if (edit.margin == kNoMargin)
        measures.*edit.value = value;
    else
        StoreMargin(measures, edit.margin, value);
}

// The limit follows the buttons, not the recorded unit: with neither pressed nothing is limited.
float LimitOf(HWND page) {
    if (IsDlgButtonChecked(page, IDC_INCHES) == BST_CHECKED)
        return LargestTyped(kInches);
    return IsDlgButtonChecked(page, IDC_MILLIMETERS) == BST_CHECKED ? LargestTyped(kMillimeters) : FLT_MAX;
}

// Puts a text that the filter changed into the edit, with the caret as far from its end as the user left it.
void WriteBack(HWND page, const NumericEdit& edit, const char* text) {
    const HWND window = GetDlgItem(page, edit.control);
    DWORD caret = 0;
    SendMessageW(window, EM_GETSEL, 0, reinterpret_cast<LPARAM>(&caret));
    const int behindCaret = GetWindowTextLengthW(window) - static_cast<int>(caret);
    SetDlgItemTextA(page, edit.control, text);
    const int at = std::max(0, GetWindowTextLengthW(window) - behindCaret);
    SendMessageW(window, EM_SETSEL, static_cast<WPARAM>(at), at);
}

void StepBy(decltype(StepTextUp)& step, HWND page, int controlId, unsigned minimum) {
    wchar_t text[kStepCharacters + 1] = L"";
    NumberText stepped;
    GetDlgItemTextW(page, controlId, text, kStepCharacters + 1);
    step(text, minimum, stepped);
    SetDlgItemTextW(page, controlId, stepped);
}

}  // namespace

int FilterNumericEdit(PageMeasureState& measures, HWND page, int controlId) {
    const auto edit = std::ranges::find(kEdits, controlId, &NumericEdit::control);
    if (edit == std::end(kEdits))
        return 1;
    NumberText typed = L"";
    GetDlgItemTextW(page, controlId, typed, kNumberChars);
    AnsiNumberText text;
    ToAnsi(typed, text);
    bool changed = FilterPass(text);
    if (const float limit = LimitOf(page); ParseNumber(text) > limit) {
        wsprintfA(text, "%d", static_cast<int>(limit));
        changed = true;
    }
    // Stored before it is written back: that runs the filter again, and its last run has the last word.
    Store(measures, *edit, text);
    if (changed)
        WriteBack(page, *edit, text);
    return 1;
}

void StepUp(HWND page, int controlId, unsigned minimum) {
    StepBy(StepTextUp, page, controlId, minimum);
}

void StepDown(HWND page, int controlId, unsigned minimum) {
    StepBy(StepTextDown, page, controlId, minimum);
}

int EditOfSpinButton(UINT_PTR spinId) {
    const auto edit = std::ranges::find_if(
        kEdits, [spinId](const NumericEdit& e) { return static_cast<UINT_PTR>(e.spin) == spinId; });
    return edit == std::end(kEdits) ? 0 : edit->control;
}

void ConvertUnits(PageMeasureState& measures, HWND page, DWORD newUnit) {
    for (const NumericEdit& edit : kEdits) {
        if (edit.margin != kNoMargin && measures.recordMargin[edit.margin])
            continue;
        NumberText& text = TextOf(measures, edit);
        GetDlgItemTextW(page, edit.control, text, kNumberChars);
        const float value = ConvertLength(ParseNumber(text), measures.unit, newUnit);
        if (edit.margin != kNoMargin)
            StoreMargin(measures, edit.margin, value);
        NumberText shown;
        FormatTwoDecimals(value, shown);
        SetDlgItemTextW(page, edit.control, shown);
    }
}

}  // namespace kzp

#include "pages/settings/NumericEdits.h"

#include <algorithm>
#include <cfloat>
#include <cstring>
#include <iterator>

#include "pages/settings/Measures.h"
#include "resources/resource.h"

namespace kzp {

namespace {

constexpr int kNoMargin = -1;

struct NumericEdit {
    int control;
    int spin;
    int margin;  // or kNoMargin
    NumberText& text;
    float& value;  // of a margin: as typed
};

constexpr NumericEdit kEdits[] = {
    {IDC_WIDTH, IDC_WIDTH_SPIN, kNoMargin, g_measures.widthText, g_measures.customWidth},
    {IDC_HEIGHT, IDC_HEIGHT_SPIN, kNoMargin, g_measures.heightText, g_measures.customHeight},
    {IDC_LEFT, IDC_LEFT_SPIN, kLeft, g_measures.marginText[kLeft], g_measures.typedMargin[kLeft]},
    {IDC_RIGHT, IDC_RIGHT_SPIN, kRight, g_measures.marginText[kRight], g_measures.typedMargin[kRight]},
    {IDC_TOP, IDC_TOP_SPIN, kTop, g_measures.marginText[kTop], g_measures.typedMargin[kTop]},
    {IDC_BOTTOM, IDC_BOTTOM_SPIN, kBottom, g_measures.marginText[kBottom], g_measures.typedMargin[kBottom]},
};

void StoreMargin(const NumericEdit& edit, float value) {
    edit.value = value;
    g_measures.checkedMargin[edit.margin] = value;
}

void Store(const NumericEdit& edit, const char* text) {
    // An edit's text may be longer in bytes than the state's buffer in characters until it is clean.
    const size_t length = std::min<size_t>(std::strlen(text), kNumberChars - 1);
    *std::copy_n(text, length, edit.text) = L'\0';
    const float value = ParseNumber(text);
    if (edit.margin == kNoMargin)
        edit.value = value;
    else
        StoreMargin(edit, value);
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
    NumberText text = L"", stepped;
    GetDlgItemTextW(page, controlId, text, kNumberChars);
    step(text, minimum, stepped);
    SetDlgItemTextW(page, controlId, stepped);
}

}  // namespace

int FilterNumericEdit(HWND page, int controlId) {
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
    Store(*edit, text);
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

void ConvertUnits(HWND page, DWORD newUnit) {
    for (const NumericEdit& edit : kEdits) {
        GetDlgItemTextW(page, edit.control, edit.text, kNumberChars);
        const float value = ConvertLength(ParseNumber(edit.text), g_measures.unit, newUnit);
        if (edit.margin != kNoMargin)
            StoreMargin(edit, value);
        NumberText shown;
        FormatTwoDecimals(value, shown);
        SetDlgItemTextW(page, edit.control, shown);
    }
}

void ForgetEdits() {
    for (const NumericEdit& edit : kEdits)
        Store(edit, "");
}

}  // namespace kzp

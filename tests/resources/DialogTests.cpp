// The three dialog templates: what is on them, what shows, what assistive software and the Tab key find, and
// that nothing is clipped or overlaps in either layout of the settings page.
#include <gtest/gtest.h>
#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <set>
#include <utility>
#include <vector>

#include "resources/resource.h"
#include "tests/resources/Delivered.h"

namespace kzp::test {
namespace {

INT_PTR CALLBACK Passive(HWND, UINT message, WPARAM, LPARAM) {
    return message == WM_INITDIALOG;
}

// A dialog made from its template, in a parent that is never shown.
class Template {
  public:
    explicit Template(int id) {
        INITCOMMONCONTROLSEX classes{sizeof classes, ICC_LISTVIEW_CLASSES | ICC_UPDOWN_CLASS};
        InitCommonControlsEx(&classes);
        m_parent = CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPED, 0, 0, 800, 600, nullptr, nullptr,
                                   nullptr, nullptr);
        m_dialog = CreateDialogParamW(PluginFile(), MAKEINTRESOURCEW(id), m_parent, Passive, 0);
    }
    ~Template() { DestroyWindow(m_parent); }
    Template(const Template&) = delete;
    Template& operator=(const Template&) = delete;

    HWND Window() const { return m_dialog; }
    HWND operator[](int control) const { return GetDlgItem(m_dialog, control); }

    std::wstring Text(int control) const {
        wchar_t text[260];
        return {text, GetDlgItemTextW(m_dialog, control, text, 260)};
    }

    RECT Place(int control) const {
        RECT place{};
        GetWindowRect((*this)[control], &place);
        MapWindowPoints(nullptr, m_dialog, reinterpret_cast<POINT*>(&place), 2);
        return place;
    }

    std::vector<int> Controls() const {
        std::vector<int> ids;
        for (HWND child = GetWindow(m_dialog, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT))
            ids.push_back(GetDlgCtrlID(child));
        return ids;
    }

    bool Shows(int control) const { return GetWindowLongPtrW((*this)[control], GWL_STYLE) & WS_VISIBLE; }

  private:
    HWND m_parent;
    HWND m_dialog;
};

constexpr int kDialogs[] = {IDD_DOCUMENT_SETTINGS, IDD_OUTPUT_LOCATION, IDD_ADVANCED};

bool HasText(HWND control) {
    wchar_t name[32];
    GetClassNameW(control, name, 32);
    return std::wcscmp(name, L"Static") == 0 || std::wcscmp(name, L"Button") == 0;
}

TEST(Dialogs, HideWhatIsNotOfferedAndNumberEachControlOnce) {
    const struct {
        int dialog;
        std::set<int> hidden;
    } expected[] = {
        {IDD_DOCUMENT_SETTINGS, {IDC_PAPER_GROUP}},
        {IDD_OUTPUT_LOCATION, {IDC_SPECIFY_LABEL, IDC_OUTPUT_GROUP, IDC_SOURCE_LOCATION}},
        {IDD_ADVANCED,
         {IDC_FONTS_GROUP, IDC_ICM_GROUP, IDC_ICM_METHOD_LABEL, IDC_ICM_INTENT_LABEL, IDC_ICM_METHOD,
          IDC_ICM_INTENT}},
    };
    for (const auto& [id, hidden] : expected) {
        const Template dialog(id);
        ASSERT_NE(nullptr, dialog.Window()) << id;
        std::set<int> all, actuallyHidden;
        for (const int control : dialog.Controls()) {
            EXPECT_TRUE(all.insert(control).second) << control;
            if (!dialog.Shows(control))
                actuallyHidden.insert(control);
        }
        EXPECT_EQ(hidden, actuallyHidden) << id;
    }
}

// The pages take their texts from there; the room that is tested below is that of the template's own.
TEST(Dialogs, SayWhatTheResourceModuleSays) {
    std::set<std::wstring> texts;
    for (UINT id = IDS_HELP_ITEM_NAME; id < 4096; ++id)
        texts.insert(TextOf(TextsFile(), id));
    for (const int id : {IDD_DOCUMENT_SETTINGS, IDD_OUTPUT_LOCATION}) {
        const Template dialog(id);
        for (const int control : dialog.Controls()) {
            if (HasText(dialog[control])) {
                EXPECT_TRUE(texts.contains(dialog.Text(control))) << Narrow(dialog.Text(control));
            }
        }
    }
}

TEST(Dialogs, PutEachLabelRightBeforeItsControl) {
    const std::pair<int, int> pairs[] = {{IDC_PAPER_LABEL, IDC_PAPER},
                                         {IDC_WIDTH_LABEL, IDC_WIDTH},
                                         {IDC_HEIGHT_LABEL, IDC_HEIGHT},
                                         {IDC_LEFT_LABEL, IDC_LEFT},
                                         {IDC_RIGHT_LABEL, IDC_RIGHT},
                                         {IDC_TOP_LABEL, IDC_TOP},
                                         {IDC_BOTTOM_LABEL, IDC_BOTTOM},
                                         {IDC_UNITS_LABEL, IDC_INCHES},
                                         {IDC_ORIENTATION_LABEL, IDC_PORTRAIT},
                                         {IDC_QUALITY_LABEL, IDC_QUALITY},
                                         {IDC_COLOR_LABEL, IDC_COLOR},
                                         {IDC_OUTPUT_TYPE_LABEL, IDC_OUTPUT_KZPX},
                                         {IDC_OUTPUT_HEADING, IDC_DOCUMENTS_LOCATION},
                                         {IDC_LOCATION_LABEL, IDC_FOLDER},
                                         {IDC_EMBED_FONTS_LABEL, IDC_FONTS_ALL},
                                         {IDC_ICM_METHOD_LABEL, IDC_ICM_METHOD},
                                         {IDC_ICM_INTENT_LABEL, IDC_ICM_INTENT}};
    size_t seen = 0;
    for (const int id : kDialogs) {
        const Template dialog(id);
        for (const auto& [label, control] : pairs) {
            if (dialog[label]) {
                EXPECT_EQ(control, GetDlgCtrlID(GetWindow(dialog[label], GW_HWNDNEXT))) << label;
                ++seen;
            }
        }
    }
    EXPECT_EQ(std::size(pairs), seen);
}

TEST(Dialogs, OptionButtonsExcludeThoseOfTheirSetAlone) {
    const struct {
        int dialog;
        std::vector<int> buttons;
    } sets[] = {
        {IDD_DOCUMENT_SETTINGS, {IDC_INCHES, IDC_MILLIMETERS}},
        {IDD_DOCUMENT_SETTINGS, {IDC_PORTRAIT, IDC_LANDSCAPE}},
        {IDD_DOCUMENT_SETTINGS, {IDC_OUTPUT_KZPX, IDC_OUTPUT_KZP}},
        {IDD_OUTPUT_LOCATION, {IDC_DOCUMENTS_LOCATION, IDC_USER_LOCATION}},
        {IDD_ADVANCED, {IDC_FONTS_ALL, IDC_FONTS_NONE, IDC_FONTS_SELECT}},
    };
    for (const auto& [id, buttons] : sets) {
        const Template dialog(id);
        // A click clears every other button of the set and none outside it.
        for (const int button : buttons)
            SendMessageW(dialog[button], BM_SETCHECK, BST_CHECKED, 0);
        for (const int button : buttons) {
            SendMessageW(dialog[button], BM_CLICK, 0, 0);
            for (const int other : buttons)
                EXPECT_EQ(other == button, SendMessageW(dialog[other], BM_GETCHECK, 0, 0) == BST_CHECKED)
                    << other;
        }
        for (const int control : dialog.Controls()) {
            if (std::ranges::find(buttons, control) == buttons.end()) {
                EXPECT_NE(BST_CHECKED, static_cast<int>(SendMessageW(dialog[control], BM_GETCHECK, 0, 0)))
                    << control;
            }
        }
    }
}

// Room in pixels that a control's text needs, with the mark of an option button or check box or the frame of
// a push button.
int TextWidth(const Template& dialog, int control) {
    std::wstring text = dialog.Text(control);
    std::erase(text, L'&');
    const HDC dc = GetDC(dialog.Window());
    const auto font = reinterpret_cast<HFONT>(SendMessageW(dialog[control], WM_GETFONT, 0, 0));
    const HGDIOBJ before = SelectObject(dc, font);
    SIZE size{};
    GetTextExtentPoint32W(dc, text.c_str(), static_cast<int>(text.size()), &size);
    SelectObject(dc, before);
    ReleaseDC(dialog.Window(), dc);
    wchar_t name[32];
    GetClassNameW(dialog[control], name, 32);
    return size.cx + (std::wcscmp(name, L"Button") == 0 ? 18 : 0);
}

void ExpectTidy(const Template& dialog) {
    RECT page{};
    GetClientRect(dialog.Window(), &page);
    std::vector<int> shown = dialog.Controls();
    std::erase_if(shown, [&](int control) { return !dialog.Shows(control); });
    for (const int control : shown) {
        const RECT place = dialog.Place(control);
        RECT common{};
        IntersectRect(&common, &place, &page);
        EXPECT_TRUE(EqualRect(&common, &place)) << control << " leaves the page";
        if (HasText(dialog[control])) {
            EXPECT_LE(TextWidth(dialog, control), place.right - place.left) << control << " is clipped";
        }
        for (const int other : shown) {
            const RECT otherPlace = dialog.Place(other);
            EXPECT_TRUE(other == control || !IntersectRect(&common, &place, &otherPlace))
                << control << " and " << other << " overlap";
        }
    }
}

TEST(Dialogs, ClipAndOverlapNothing) {
    for (const int id : kDialogs) {
        SCOPED_TRACE(id);
        ExpectTidy(Template(id));
    }
}

TEST(Dialogs, StayTidyWhenTheSizeRowHides) {
    const Template dialog(IDD_DOCUMENT_SETTINGS);
    for (const int control :
         {IDC_WIDTH_LABEL, IDC_WIDTH, IDC_WIDTH_SPIN, IDC_HEIGHT_LABEL, IDC_HEIGHT, IDC_HEIGHT_SPIN})
        ShowWindow(dialog[control], SW_HIDE);
    const LONG gap = dialog.Place(IDC_LEFT).top - dialog.Place(IDC_WIDTH).top;
    const LONG shift = dialog.Place(IDC_WIDTH_LABEL).top - dialog.Place(IDC_MARGIN_LABEL).top;
    EXPECT_NEAR(gap, -shift, 1) << "the rows below must come to stand where the size row was";
    for (int control = IDC_MOVING_FIRST; control <= IDC_MOVING_LAST; ++control) {
        const RECT place = dialog.Place(control);
        SetWindowPos(dialog[control], nullptr, place.left, place.top + shift, 0, 0,
                     SWP_NOSIZE | SWP_NOZORDER);
    }
    ExpectTidy(dialog);
}

TEST(Dialogs, PutSpinButtonsAtTheEdgeOfTheirEdits) {
    const Template dialog(IDD_DOCUMENT_SETTINGS);
    const struct {
        int edit, spin;
    } pairs[] = {{IDC_WIDTH, IDC_WIDTH_SPIN}, {IDC_HEIGHT, IDC_HEIGHT_SPIN}, {IDC_LEFT, IDC_LEFT_SPIN},
                 {IDC_RIGHT, IDC_RIGHT_SPIN}, {IDC_TOP, IDC_TOP_SPIN},       {IDC_BOTTOM, IDC_BOTTOM_SPIN}};
    for (const auto& [edit, spin] : pairs) {
        const RECT e = dialog.Place(edit);
        const RECT s = dialog.Place(spin);
        EXPECT_NEAR(e.right, s.left, 1) << spin;
        EXPECT_EQ(e.top, s.top) << spin;
        EXPECT_EQ(e.bottom, s.bottom) << spin;
        // With a buddy the control would write whole numbers into the edit by itself.
        EXPECT_EQ(0, SendMessageW(dialog[spin], UDM_GETBUDDY, 0, 0)) << spin;
    }
}

}  // namespace
}  // namespace kzp::test

// The three dialog templates: what is on them, what shows, and what assistive software finds.
#include <gtest/gtest.h>
#include <windows.h>

#include <commctrl.h>

#include <map>
#include <set>
#include <vector>

#include "resources/resource.h"
#include "tests/resources/Delivered.h"
#include "tools/driverhost/Text.h"

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

TEST(Dialogs, HideWhatIsNotOfferedAndNumberEachControlOnce) {
    const struct {
        int dialog;
        std::set<int> hidden;
    } expected[] = {
        {IDD_DOCUMENT_SETTINGS, {IDC_PAPER_GROUP}},
        {IDD_OUTPUT_LOCATION, {IDC_SPECIFY_LABEL, IDC_OUTPUT_GROUP, IDC_SOURCE_LOCATION}},
        {IDD_ADVANCED,
         {IDC_FONTS_GROUP, IDC_FONT_LIST_LABEL, IDC_ICM_GROUP, IDC_ICM_METHOD_LABEL, IDC_ICM_INTENT_LABEL,
          IDC_ICM_METHOD, IDC_ICM_INTENT}},
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

bool IsOf(const wchar_t* windowClass, HWND control) {
    wchar_t name[32];
    GetClassNameW(control, name, 32);
    return std::wcscmp(name, windowClass) == 0;
}

TEST(Dialogs, SayWhatTheResourceModuleSays) {
    std::set<std::wstring> texts;
    for (UINT id = IDS_HELP_ITEM_NAME; id < 4096; ++id)
        texts.insert(TextOf(TextsFile(), id));
    for (const int id : {IDD_DOCUMENT_SETTINGS, IDD_OUTPUT_LOCATION}) {
        const Template dialog(id);
        for (const int control : dialog.Controls()) {
            if (IsOf(WC_STATICW, dialog[control]) || IsOf(WC_BUTTONW, dialog[control])) {
                EXPECT_TRUE(texts.contains(dialog.Text(control))) << driverhost::Utf8(dialog.Text(control));
            }
        }
    }
}

// Assistive software names an edit, a list and a set of option buttons by the text right before it, shown or
// not.
TEST(Dialogs, PutEachLabelRightBeforeItsControl) {
    const std::map<int, int> labels = {{IDC_PAPER, IDC_PAPER_LABEL},
                                       {IDC_WIDTH, IDC_WIDTH_LABEL},
                                       {IDC_HEIGHT, IDC_HEIGHT_LABEL},
                                       {IDC_LEFT, IDC_LEFT_LABEL},
                                       {IDC_RIGHT, IDC_RIGHT_LABEL},
                                       {IDC_TOP, IDC_TOP_LABEL},
                                       {IDC_BOTTOM, IDC_BOTTOM_LABEL},
                                       {IDC_INCHES, IDC_UNITS_LABEL},
                                       {IDC_PORTRAIT, IDC_ORIENTATION_LABEL},
                                       {IDC_QUALITY, IDC_QUALITY_LABEL},
                                       {IDC_COLOR, IDC_COLOR_LABEL},
                                       {IDC_OUTPUT_KZPX, IDC_OUTPUT_TYPE_LABEL},
                                       {IDC_DOCUMENTS_LOCATION, IDC_OUTPUT_HEADING},
                                       {IDC_FOLDER, IDC_LOCATION_LABEL},
                                       {IDC_FONTS_ALL, IDC_EMBED_FONTS_LABEL},
                                       {IDC_FONT_LIST, IDC_FONT_LIST_LABEL},
                                       {IDC_ICM_METHOD, IDC_ICM_METHOD_LABEL},
                                       {IDC_ICM_INTENT, IDC_ICM_INTENT_LABEL}};
    std::map<int, int> found;
    for (const int id : kDialogs) {
        const Template dialog(id);
        for (const int control : dialog.Controls()) {
            const HWND window = dialog[control];
            const LONG style = GetWindowLongW(window, GWL_STYLE);
            const bool firstOption =
                IsOf(WC_BUTTONW, window) && (style & WS_GROUP) && (style & BS_TYPEMASK) == BS_AUTORADIOBUTTON;
            if (!firstOption && !IsOf(WC_EDITW, window) && !IsOf(WC_COMBOBOXW, window) &&
                !IsOf(WC_LISTVIEWW, window))
                continue;
            const HWND label = GetWindow(window, GW_HWNDPREV);
            EXPECT_TRUE(IsOf(WC_STATICW, label) && GetWindowTextLengthW(label) > 0) << control;
            found[control] = GetDlgCtrlID(label);
        }
    }
    EXPECT_EQ(labels, found);
}

}  // namespace
}  // namespace kzp::test

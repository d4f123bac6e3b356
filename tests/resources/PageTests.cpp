// The pages in a real sheet, in every language and at the usual resolutions: they speak the user's language,
// nothing is clipped or overlaps in either layout of the settings page, no mnemonic is given twice.
#include <gtest/gtest.h>
#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <cstdlib>
#include <string_view>

#include "resources/resource.h"
#include "tests/resources/Delivered.h"
#include "tests/support/ProgramCopy.h"
#include "tests/support/SheetTest.h"

namespace kzp::test {
namespace {

using driverhost::SheetUser;
using driverhost::Utf8;

struct Language {
    std::string_view locale;
    LANGID texts;
    const wchar_t* allFonts;  // from the dialog that keeps its template's texts
};

constexpr Language kSpoken[] = {{"de", kGerman, L"Alle"}, {"fr", kFrench, L"Toutes"}, {"", kEnglish, L"All"}};

// What this process must speak: the platform takes its language from there, too.
const Language& Expected() {
    const char* const locale = std::getenv("LC_ALL");
    return *std::ranges::find_if(kSpoken, [&](const Language& l) {
        return std::string_view(locale ? locale : "").starts_with(l.locale);
    });
}

std::wstring WindowText(HWND window) {
    wchar_t text[260];
    return {text, static_cast<size_t>(GetWindowTextW(window, text, 260))};
}

RECT PlaceOf(HWND window) {
    RECT place = {};
    GetWindowRect(window, &place);
    return place;
}

std::vector<HWND> ShownChildren(HWND parent) {
    std::vector<HWND> shown;
    for (HWND child = GetWindow(parent, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
        if (IsWindowVisible(child))
            shown.push_back(child);
    }
    return shown;
}

// Room that a text needs, with the mark of an option button or check box or the frame of a push button. Fonts
// of other machines may run a little wider.
SIZE NeededRoom(HWND control, int dpi) {
    wchar_t name[32];
    GetClassNameW(control, name, 32);
    const bool button = std::wcscmp(name, WC_BUTTONW) == 0;
    if (!button && std::wcscmp(name, WC_STATICW) != 0)
        return {};
    std::wstring text = WindowText(control);
    std::erase(text, L'&');
    const HDC dc = GetDC(control);
    const auto font = reinterpret_cast<HFONT>(SendMessageW(control, WM_GETFONT, 0, 0));
    const HGDIOBJ before = SelectObject(dc, font);
    SIZE size = {};
    GetTextExtentPoint32W(dc, text.c_str(), static_cast<int>(text.size()), &size);
    SelectObject(dc, before);
    ReleaseDC(control, dc);
    return {size.cx * 21 / 20 + (button ? 18 * dpi / 96 : 0), size.cy};
}

void ExpectWithin(const RECT& place, const RECT& whole) {
    RECT both;
    EXPECT_TRUE(UnionRect(&both, &place, &whole) && EqualRect(&both, &whole)) << "leaves the page";
}

void ExpectTidy(HWND page, int dpi) {
    const RECT whole = PlaceOf(page);
    const std::vector<HWND> shown = ShownChildren(page);
    EXPECT_GE(shown.size(), 6u);
    for (const HWND control : shown) {
        const RECT place = PlaceOf(control);
        const SIZE needed = NeededRoom(control, dpi);
        SCOPED_TRACE(testing::Message() << GetDlgCtrlID(control) << ' ' << Utf8(WindowText(control)));
        ExpectWithin(place, whole);
        EXPECT_LE(needed.cx, place.right - place.left) << "is clipped";
        EXPECT_LE(needed.cy, place.bottom - place.top) << "is clipped";
        for (const HWND other : shown) {
            const RECT otherPlace = PlaceOf(other);
            RECT common;
            EXPECT_TRUE(other == control || !IntersectRect(&common, &place, &otherPlace))
                << "overlaps " << GetDlgCtrlID(other);
        }
    }
}

void ExpectMnemonicsOnce(HWND sheet, HWND page) {
    std::wstring seen;
    for (const HWND parent : {sheet, page}) {
        for (const HWND control : ShownChildren(parent)) {
            const std::wstring text = WindowText(control);
            const size_t mark = text.find(L'&');
            if (mark == std::wstring::npos)
                continue;
            const auto letter = static_cast<wchar_t>(std::towupper(text.at(mark + 1)));
            EXPECT_EQ(std::wstring::npos, seen.find(letter)) << Utf8(text) << " in " << Utf8(seen);
            seen += letter;
        }
    }
    EXPECT_FALSE(seen.empty());
}

// The row of the custom size, and with it the whole page, as a user sees them.
void ExpectTidySettings(SheetUser& user, const Language& language, int dpi) {
    const HWND page = user.Sheet().PageWindow(1);
    EXPECT_EQ(user.Sheet().TabText(1), TextOf(TextsFile(), IDS_SETTINGS_PAGE_TITLE, language.texts));
    EXPECT_EQ(user.Text(IDC_MARGIN_LABEL), TextOf(TextsFile(), IDS_MARGIN_LABEL, language.texts));
    const LONG top = PlaceOf(user.Find(IDC_WIDTH)).top;
    EXPECT_NEAR(top, PlaceOf(user.Find(IDC_LEFT)).top, 1) << "the margins stand where the size row was";
    ExpectTidy(page, dpi);
    user.Select(IDC_PAPER, TextOf(TextsFile(), IDS_CUSTOM_PAPER, language.texts));
    EXPECT_TRUE(user.Visible(IDC_WIDTH));
    ExpectTidy(page, dpi);
    ExpectMnemonicsOnce(user.Sheet().Window(), page);
    for (const int edit : {IDC_WIDTH, IDC_HEIGHT, IDC_LEFT, IDC_RIGHT, IDC_TOP, IDC_BOTTOM}) {
        const RECT place = PlaceOf(user.Find(edit));
        const RECT spin = PlaceOf(GetWindow(user.Find(edit), GW_HWNDNEXT));
        EXPECT_NEAR(place.right, spin.left, 1) << edit;
        EXPECT_TRUE(place.top == spin.top && place.bottom == spin.bottom) << edit;
    }
}

void ShowPages(const Language& language, int dpi) {
    const HDC screen = GetDC(nullptr);
    EXPECT_EQ(dpi, GetDeviceCaps(screen, LOGPIXELSX)) << "the process runs at another resolution";
    ReleaseDC(nullptr, screen);
    const ScratchRegistry registry;
    standins::spooler::SetUpPrinter({.name = driverhost::kDefaultPrinter});
    HostedSheet host;
    host.run.Add([&](SheetUser& user) { ExpectTidySettings(user, language, dpi); });
    host.run.Add([](SheetUser& user) { user.ClickTab(2); });
    host.run.Add([&](SheetUser& user) {
        EXPECT_EQ(user.Sheet().TabText(2), TextOf(TextsFile(), IDS_OUTPUT_PAGE_TITLE, language.texts));
        EXPECT_EQ(user.Text(IDC_BROWSE), TextOf(TextsFile(), IDS_BROWSE, language.texts));
        ExpectTidy(user.Sheet().PageWindow(2), dpi);
        user.ClickTab(0);
    });
    host.run.Add([&](SheetUser& user) {
        const HWND fonts = GetParent(user.Find(IDC_FONT_LIST));
        EXPECT_EQ(user.Text(IDC_FONTS_ALL), language.allFonts);
        ExpectTidy(fonts, dpi);
        ExpectWithin(PlaceOf(fonts), PlaceOf(GetParent(fonts)));
    });
    host.run.Show();
}

constexpr char kDpi[] = "KZP_TEST_DPI";

// Programs started from here on see this resolution, later ones the usual one.
class Resolution {
  public:
    explicit Resolution(DWORD dpi) {
        SetEnvironmentVariableA(kDpi, std::to_string(dpi).c_str());
        RegSetKeyValueW(HKEY_CURRENT_USER, kKey, kName, REG_DWORD, &dpi, sizeof dpi);
    }
    ~Resolution() { RegDeleteKeyValueW(HKEY_CURRENT_USER, kKey, kName); }
    Resolution(const Resolution&) = delete;
    Resolution& operator=(const Resolution&) = delete;

  private:
    static constexpr wchar_t kKey[] = L"Control Panel\\Desktop";
    static constexpr wchar_t kName[] = L"LogPixels";
};

TEST(Pages, ReadWell) {
    if (const char* const dpi = ProgramCopy::IsCopy() ? std::getenv(kDpi) : nullptr)
        return ShowPages(Expected(), std::atoi(dpi));
    EXPECT_EQ(LanguagesOf(PluginFile(), RT_DIALOG, IDD_ADVANCED).size(), std::size(kSpoken));
    for (const int tried : {96, 120, 144}) {
        SCOPED_TRACE(tried);
        const Resolution resolution(static_cast<DWORD>(tried));
        EXPECT_EQ(0u, ProgramCopy().Wait());
    }
}

}  // namespace
}  // namespace kzp::test

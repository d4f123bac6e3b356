// The pages in a real sheet, in every language and at the usual resolutions: each control says what it
// should, in English and in German, behind the label that names it, nothing is clipped or overlaps in either
// layout of the settings page, no mnemonic is given twice.
#include <gtest/gtest.h>
#include <windows.h>

#include <commctrl.h>
#include <prsht.h>

#include <algorithm>
#include <cstdlib>
#include <string_view>

#include "resources/resource.h"
#include "tests/support/Files.h"
#include "tests/support/ProgramCopy.h"
#include "tests/support/SheetTest.h"

namespace kzp::test {
namespace {

using driverhost::SheetUser;
using driverhost::Utf8;

// Everything on a page in its order, as the user reads it; controls without a text are named by their kind,
// hidden ones in parentheses. Assistive software names an edit, a list and a set of option buttons by the
// text right before it, shown or not.
struct Language {
    const char* titles;
    const char* settings;
    const char* output;
    const char* fonts;
    const char* methods;  // what the hidden lists of colour management offer
};

constexpr Language kSpoken[] = {
    {"KZP-Einstellungen|Speicherort",
     "(Papierformat:)|Papierformat:|_|Breite:|_|Höhe:|_|Ränder:|Links:|_|Rechts:|_|Oben:|_|Unten:|_|"
     "Maßeinheit:|&Zoll|&Millimeter|Ausrichtung:|&Hochformat|&Querformat|Druckqualität:|_|Farbe:|_|"
     "Ausgabetyp:|KZPx|KZP|Im KZP Viewer anzeigen|Hilfe|",
     "(File output location:)|Speicherort der Ausgabedateien:|Ordner \"Dokumente\"|Benutzerdefinierter "
     "Ordner|(Ordner des Quelldokuments)|(Geben Sie den Ordner für die KZP-Dateien "
     "an.)|Ordner:|_|Durchsuchen...|Nach dem Namen der KZP-Datei fragen|Hilfe|",
     "(Schriftarten einbetten:)|Schriftarten einbetten:|Alle|Keine|Schriftarten auswählen|(Einzubettende "
     "Schriftarten:)|_|(Bildfarbverwaltung:)|(ICM-Methode:)|(_)|(ICM-Absicht:)|(_)|Hilfe|",
     "Durch das Hostsystem|Deaktiviert|Durch den Drucker|Durch den Drucker, mit dessen "
     "Kalibrierung|Grafiken|Bilder|Proof|"},
    {"KZP Settings|Output Location",
     "(Paper size:)|Paper "
     "size:|_|Width:|_|Height:|_|Margin:|Left:|_|Right:|_|Top:|_|Bottom:|_|Units:|&Inches|&Millimeters|"
     "Orientation:|Po&rtrait|&Landscape|Print quality:|_|Color:|_|Output Type:|KZPx|KZP|Display in KZP "
     "Viewer|Help|",
     "(File output location:)|File output location:|My Documents location|User document location|(Source "
     "document location)|(Specify the folder to save  the KZP files.)|Location :|_|Browse...|Prompt for KZP "
     "file name|Help|",
     "(Embed fonts:)|Embed fonts:|All|None|Select fonts|(Fonts to embed:)|_|(Image color management:)|(ICM "
     "Method:)|(_)|(ICM Intent:)|(_)|Help|",
     "Handled by the host system|Disabled|Handled by the printer|Handled by the printer, with its "
     "calibration|Graphics|Pictures|Proof|"}};

// What this process must speak, null where it is not written down: the platform takes its language from
// there, too.
const Language* Expected() {
    const char* const locale = std::getenv("LC_ALL");
    const std::string_view name = std::string_view(locale ? locale : "").substr(0, 2);
    return name == "de" ? &kSpoken[0] : name == "fr" ? nullptr : &kSpoken[1];
}

std::wstring WindowText(HWND window) {
    wchar_t text[260];
    return {text, static_cast<size_t>(GetWindowTextW(window, text, 260))};
}

bool IsOf(const wchar_t* kind, HWND window) {
    wchar_t name[32];
    GetClassNameW(window, name, 32);
    return std::wcscmp(name, kind) == 0;
}

// Spin buttons belong to the edit before them; the separator says nothing.
std::string Outline(HWND page) {
    std::wstring outline;
    for (HWND control = GetWindow(page, GW_CHILD); control; control = GetWindow(control, GW_HWNDNEXT)) {
        const bool speaks = IsOf(WC_BUTTONW, control) || IsOf(WC_STATICW, control);
        const std::wstring text = speaks ? WindowText(control) : L"_";
        if (text.empty() || IsOf(UPDOWN_CLASSW, control))
            continue;
        const bool shown = GetWindowLongW(control, GWL_STYLE) & WS_VISIBLE;
        outline += shown ? text + L"|" : L"(" + text + L")|";
    }
    std::ranges::replace(outline, L'\u00A0', L' ');
    return Utf8(outline);
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
    const bool button = IsOf(WC_BUTTONW, control);
    if (!button && !IsOf(WC_STATICW, control))
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

// As the user finds the settings page, and with the row of the custom size.
void ExpectTidySettings(SheetUser& user, int dpi) {
    const HWND page = user.Sheet().PageWindow(1);
    const LONG top = PlaceOf(user.Find(IDC_WIDTH)).top;
    EXPECT_NEAR(top, PlaceOf(user.Find(IDC_LEFT)).top, 1) << "the margins stand where the size row was";
    ExpectTidy(page, dpi);
    user.SelectIndex(IDC_PAPER, static_cast<int>(ListEntries(user, IDC_PAPER).size()) - 1);
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

// What pages are told about their titles.
std::wstring g_told;

LRESULT CALLBACK NoteTitle(int code, WPARAM wParam, LPARAM lParam) {
    const auto& sent = *reinterpret_cast<const CWPSTRUCT*>(lParam);
    if (sent.message == PSM_SETTITLEW && sent.wParam == 1 && IsOf(L"#32770", sent.hwnd) &&
        (GetWindowLongW(sent.hwnd, GWL_STYLE) & WS_CHILD))
        g_told += (g_told.empty() ? L"" : L"|") + std::wstring(reinterpret_cast<const wchar_t*>(sent.lParam));
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

// Without a language the texts are not looked at.
void ShowPages(const Language* language, const char* told, int dpi, const std::wstring& dll) {
    const ScratchRegistry registry;
    standins::spooler::SetUpPrinter({.name = driverhost::kDefaultPrinter});
    g_told.clear();
    const HHOOK hook = SetWindowsHookExW(WH_CALLWNDPROC, NoteTitle, nullptr, GetCurrentThreadId());
    HostedSheet host({}, {}, dll);
    const auto expect = [&](const char* Language::* texts, const std::string& said) {
        EXPECT_EQ(language ? language->*texts : said, said);
    };
    host.run.Add([&](SheetUser& user) {
        ExpectTidySettings(user, dpi);
        expect(&Language::settings, Outline(user.Sheet().PageWindow(1)));
        expect(&Language::titles, Utf8(user.Sheet().TabText(1) + L"|" + user.Sheet().TabText(2)));
        EXPECT_EQ(told ? told : Utf8(user.Sheet().TabText(1) + L"|" + user.Sheet().TabText(2)), Utf8(g_told));
        user.ClickTab(2);
    });
    host.run.Add([&](SheetUser& user) {
        ExpectTidy(user.Sheet().PageWindow(2), dpi);
        expect(&Language::output, Outline(user.Sheet().PageWindow(2)));
        user.ClickTab(0);
    });
    host.run.Add([&](SheetUser& user) {
        const HWND fonts = GetParent(user.Find(IDC_FONT_LIST));
        ExpectTidy(fonts, dpi);
        ExpectWithin(PlaceOf(fonts), PlaceOf(GetParent(fonts)));
        expect(&Language::fonts, Outline(fonts));
        std::wstring methods;
        for (const int list : {IDC_ICM_METHOD, IDC_ICM_INTENT}) {
            for (const std::wstring& entry : ListEntries(user, list))
                methods += entry + L"|";
        }
        expect(&Language::methods, Utf8(methods));
    });
    host.run.Show();
    UnhookWindowsHookEx(hook);
}

void ShowAllPages(int dpi) {
    const HDC screen = GetDC(nullptr);
    EXPECT_EQ(dpi, GetDeviceCaps(screen, LOGPIXELSX)) << "the process runs at another resolution";
    ReleaseDC(nullptr, screen);
    const Language* const spoken = Expected();
    ShowPages(spoken, nullptr, dpi, BesideExe(L"KZPWriterUI.dll"));
    if (!spoken)
        return;
    // Without the resource module the two pages speak English, and the dialog in the driver's page what it
    // brings.
    const TemporaryFolder alone;
    Language own = kSpoken[1];
    own.fonts = spoken->fonts;
    own.methods = "|||||||";
    ShowPages(&own, "", dpi, alone.Take(L"KZPWriterUI.dll"));
}

constexpr char kDpi[] = "KZP_TEST_DPI";

// Programs started from here on see this resolution, later ones the usual one.
struct Resolution {
    explicit Resolution(DWORD dpi) {
        SetEnvironmentVariableA(kDpi, std::to_string(dpi).c_str());
        RegSetKeyValueW(HKEY_CURRENT_USER, kKey, kName, REG_DWORD, &dpi, sizeof dpi);
    }
    ~Resolution() { RegDeleteKeyValueW(HKEY_CURRENT_USER, kKey, kName); }

    static constexpr wchar_t kKey[] = L"Control Panel\\Desktop";
    static constexpr wchar_t kName[] = L"LogPixels";
};

TEST(Pages, ReadWell) {
    if (const char* const dpi = ProgramCopy::IsCopy() ? std::getenv(kDpi) : nullptr) {
        SetProcessDPIAware();  // others are shown 96
        return ShowAllPages(std::atoi(dpi));
    }
    for (const int tried : {96, 120, 144}) {
        SCOPED_TRACE(tried);
        const Resolution resolution(static_cast<DWORD>(tried));
        EXPECT_EQ(0u, ProgramCopy().Wait());
    }
}

}  // namespace
}  // namespace kzp::test

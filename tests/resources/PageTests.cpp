// The pages in a real sheet, in every language and at the usual resolutions: each control says what it
// should, in English and in German, behind the label that names it, nothing is clipped or overlaps, no
// mnemonic is given twice.
#include <algorithm>
#include <cstdlib>
#include <cwctype>

#include "resources/resource.h"
#include "tests/support/Files.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/SheetTest.h"

namespace kzp::test {
namespace {

using driverhost::SheetUser;
using driverhost::Utf8;

// Everything in its order, as the user reads it, hidden controls in parentheses; "_" is an edit, a list or a
// spin button. Assistive software names an edit, a list and a set of option buttons by the text right before
// it, shown or not.
struct Language {
    std::string titles;  // of the tabs
    std::string pages;
    std::string fonts;
};

const Language kGerman = {
    "KZP-Einstellungen|Speicherort|",
    "(Papierformat:)|Papierformat:|_|Breite:|_|_|Höhe:|_|_|"
    "Ränder:|Links:|_|_|Rechts:|_|_|Oben:|_|_|Unten:|_|_|Maßeinheit:|&Zoll|&Millimeter|"
    "Ausrichtung:|&Hochformat|&Querformat|Druckqualität:|_|Farbe:|_|"
    "Ausgabetyp:|KZPx|KZP|Im KZP Viewer anzeigen|Hilfe|"
    "(File output location:)|Speicherort der Ausgabedateien:|Ordner \"Dokumente\"|"
    "Benutzerdefinierter Ordner|(Ordner des Quelldokuments)|(Geben Sie den Ordner für die KZP-Dateien an.)|"
    "Ordner:|_|Durchsuchen...|Nach dem Namen der KZP-Datei fragen|Hilfe|",
    "(Schriftarten einbetten:)|Schriftarten einbetten:|Alle|Keine|Schriftarten auswählen|"
    "(Einzubettende Schriftarten:)|_|(Bildfarbverwaltung:)|(ICM-Methode:)|(_)|(ICM-Absicht:)|(_)|Hilfe|"};
const Language kEnglish = {
    "KZP Settings|Output Location|",
    "(Paper size:)|Paper size:|_|Width:|_|_|Height:|_|_|"
    "Margin:|Left:|_|_|Right:|_|_|Top:|_|_|Bottom:|_|_|Units:|&Inches|&Millimeters|"
    "Orientation:|Po&rtrait|&Landscape|Print quality:|_|Color:|_|"
    "Output Type:|KZPx|KZP|Display in KZP Viewer|Help|"
    "(File output location:)|File output location:|My Documents location|"
    "User document location|(Source document location)|(Specify the folder to save  the KZP files.)|"
    "Location :|_|Browse...|Prompt for KZP file name|Help|",
    "(Embed fonts:)|Embed fonts:|All|None|Select fonts|"
    "(Fonts to embed:)|_|(Image color management:)|(ICM Method:)|(_)|(ICM Intent:)|(_)|Help|"};

// What a button or a label says; "_" for the rest.
std::wstring TextOf(HWND control) {
    wchar_t text[260];
    const bool speaks = SendMessageW(control, WM_GETDLGCODE, 0, 0) & (DLGC_STATIC | DLGC_BUTTON);
    return speaks ? std::wstring(text, static_cast<size_t>(GetWindowTextW(control, text, 260))) : L"_";
}

RECT PlaceOf(HWND window) {
    RECT place = {};
    GetWindowRect(window, &place);
    return place;
}

// Room for its text, with the mark of an option button or check box or the frame of a push button. Fonts of
// other machines may run a little wider.
bool HasRoom(HWND control, std::wstring text, const RECT& place) {
    std::erase(text, L'&');
    const HDC dc = GetDC(control);
    SelectObject(dc, reinterpret_cast<HFONT>(SendMessageW(control, WM_GETFONT, 0, 0)));
    SIZE size = {};
    GetTextExtentPoint32W(dc, text.c_str(), static_cast<int>(text.size()), &size);
    const bool button = SendMessageW(control, WM_GETDLGCODE, 0, 0) & DLGC_BUTTON;
    const int mark = button ? 18 * GetDeviceCaps(dc, LOGPIXELSX) / 96 : 0;
    ReleaseDC(control, dc);
    return size.cx * 21 / 20 + mark <= place.right - place.left && size.cy <= place.bottom - place.top;
}

// Everything on a page in its order, as the user reads it, and whether it can be read.
std::wstring Read(HWND page, HWND apply) {
    std::wstring said;
    std::vector<RECT> taken;
    const RECT within = PlaceOf(page), around = PlaceOf(GetParent(page));
    RECT whole, common;
    IntersectRect(&whole, &within, &around);
    for (HWND control = GetWindow(page, GW_CHILD); control; control = GetWindow(control, GW_HWNDNEXT)) {
        const std::wstring text = TextOf(control);
        const bool shown = GetWindowLongW(control, GWL_STYLE) & WS_VISIBLE;
        said += text.empty() ? L"" : shown ? text + L"|" : L"(" + text + L")|";
        if (!shown)
            continue;
        SCOPED_TRACE(testing::Message() << GetDlgCtrlID(control) << ' ' << Utf8(text));
        const RECT place = PlaceOf(control);
        EXPECT_TRUE(HasRoom(control, text, place)) << "is clipped";
        EXPECT_TRUE(IntersectRect(&common, &place, &whole) && EqualRect(&common, &place)) << "leaves it";
        for (const RECT& other : taken)
            EXPECT_FALSE(IntersectRect(&common, &place, &other)) << "overlaps what stands before it";
        taken.push_back(place);
    }
    const std::wstring marked = TextOf(apply) + said;
    std::wstring mnemonics;
    for (size_t mark = 0; (mark = marked.find(L'&', mark)) != std::wstring::npos;)
        mnemonics += static_cast<wchar_t>(std::towupper(marked.at(++mark)));
    std::ranges::sort(mnemonics);
    EXPECT_EQ(mnemonics.end(), std::ranges::adjacent_find(mnemonics)) << "given twice: " << Utf8(mnemonics);
    return said;
}

std::wstring g_told;  // to the pages, as their titles

LRESULT WINAPI NoteTitle(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == PSM_SETTITLEW && wParam == 1 && (GetWindowLongW(window, GWL_STYLE) & WS_CHILD))
        g_told += std::wstring(reinterpret_cast<const wchar_t*>(lParam)) + L"|";
    return SendMessageW(window, message, wParam, lParam);
}

// What a whole sheet says: titles of tabs, pages, dialog, titles that the pages were told.
std::string ReadSheet(const std::wstring& dll) {
    const ScratchRegistry registry;
    standins::spooler::SetUpPrinter({.name = driverhost::kDefaultPrinter});
    HostedSheet host({}, {}, dll);
    const ImportPatch titles(host.plugIn.Module(), "SendMessageW", AddressOf(&NoteTitle));
    g_told.clear();
    std::wstring said;
    for (const int tab : {1, 2, 0}) {
        host.run.Add([tab](SheetUser& user) { user.ClickTab(tab); });
        host.run.Add([&, tab](SheetUser& user) {
            if (tab == 1) {
                said = host.sheet.TabText(1) + L"|" + host.sheet.TabText(2) + L"|";
                user.Select(IDC_PAPER, ListEntries(user, IDC_PAPER).back());  // shows the size, too
            }
            const HWND page = tab ? host.sheet.PageWindow(tab) : GetParent(user.Find(IDC_FONT_LIST));
            said += Read(page, GetDlgItem(host.sheet.Window(), IDC_SHEET_APPLY));
        });
    }
    host.run.Show();
    said += g_told;
    std::ranges::replace(said, L'\u00A0', L' ');
    return Utf8(said);
}

TEST(Pages, ReadWell) {
    SetProcessDPIAware();  // others are shown 96
    const HDC screen = GetDC(nullptr);
    const char* const resolution = std::getenv("KZP_RESOLUTION");
    EXPECT_TRUE(!resolution || std::atoi(resolution) == GetDeviceCaps(screen, LOGPIXELSX));
    ReleaseDC(nullptr, screen);
    // The platform takes its language from there, too. French texts are not written down here.
    const char* const locale = std::getenv("LC_ALL");
    const std::string language = std::string(locale ? locale : "").substr(0, 2);
    const std::string said = ReadSheet(BesideExe(L"KZPWriterUI.dll"));
    if (language == "fr")
        return;
    const auto& [titles, pages, fonts] = language == "de" ? kGerman : kEnglish;
    EXPECT_EQ(titles + pages + fonts + titles, said);
    // Without the resource module the two pages speak English, and the dialog in the driver's page what it
    // brings.
    const TemporaryFolder alone;
    EXPECT_EQ(kEnglish.titles + kEnglish.pages + fonts, ReadSheet(alone.Take(L"KZPWriterUI.dll")));
}

}  // namespace
}  // namespace kzp::test

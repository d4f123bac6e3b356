// The fonts dialog with ten times as many fonts: what it does must grow with their number.
#include <windows.h>

#include "pages/advanced/FontList.h"
#include "resources/resource.h"
#include "tests/support/ImportPatch.h"
#include "tools/bench/Bench.h"

namespace kzp::bench {

namespace {

constexpr double kLimit = 12;
constexpr size_t kRounds = 4;
constexpr size_t kFew = 300, kMany = 3000;

const std::vector<std::wstring>* g_families = nullptr;

int WINAPI EnumerateFamilies(HDC, LPCWSTR, FONTENUMPROCW report, LPARAM parameter) {
    int answer = 1;
    for (const std::wstring& family : *g_families) {
        LOGFONTW font = {};
        family.copy(font.lfFaceName, LF_FACESIZE - 1);
        const TEXTMETRICW metrics = {};
        answer = report(&font, &metrics, TRUETYPE_FONTTYPE, parameter);
        if (answer == 0)
            break;
    }
    return answer;
}

// In no order, as an enumeration gives them.
std::vector<std::wstring> MakeFamilies(size_t count) {
    std::vector<std::wstring> names;
    unsigned random = 7;
    for (size_t index = 0; index < count; ++index) {
        random = random * 1103515245 + 12345;
        names.push_back(std::wstring(1, static_cast<wchar_t>(L'A' + (random >> 16) % 26)) + L"amily " +
                        std::to_wstring(index));
    }
    return names;
}

// Every second family is stored as chosen.
void StoreChoice(const std::vector<std::wstring>& families) {
    std::vector<FontRecord> records;
    for (size_t index = 0; index < families.size(); index += 2)
        records.push_back(MakeFontRecord(families[index]));
    standins::WriteValue(HKEY_CURRENT_USER, standins::kSettingsKey, L"FONTLIST", REG_BINARY, records.data(),
                         records.size() * sizeof(FontRecord));
}

// The driver's page in a window that stands for the sheet; the plug-in embeds its dialog in it.
struct FontsPage {
    const HWND sheet;
    const driverhost::PlugIn plugIn;
    driverhost::DocumentSession session{plugIn, {.needsPrinter = false}};
    HWND page = nullptr;
    HWND dialog = nullptr;

    void Open() {
        page = CreateWindowExW(WS_EX_CONTROLPARENT, L"STATIC", L"", WS_CHILD | WS_VISIBLE, 0, 0, 460, 350,
                               sheet, nullptr, nullptr, nullptr);
        session.TellCallback(CPSUICB_REASON_SETACTIVE, page);
        dialog = FindWindowExW(page, nullptr, L"#32770", nullptr);
        Require(dialog, "the fonts dialog does not open");
    }
    void Close() const {
        DestroyWindow(page);
        HandlePendingMessages();
    }
};

}  // namespace

void MeasureFonts() {
    BeginChapter(
        "The font list",
        "The fonts dialog with 3,000 families beside the same with 300, half of them stored as chosen; the "
        "list control's own work included. The enumeration is replaced, so that both numbers are there.",
        "3,000", "300");
    const standins::ScratchRegistry registry;
    const ShownWindow window;
    FontsPage fonts{window.Get()};
    fonts.session.PresentItems();
    const test::ImportPatch enumeration(fonts.plugIn.Module(), "EnumFontFamiliesW",
                                        test::AddressOf(&EnumerateFamilies));
    const std::vector<std::wstring> few = MakeFamilies(kFew), many = MakeFamilies(kMany);

    const auto install = [&](bool isMany) {
        g_families = isMany ? &many : &few;
        StoreChoice(*g_families);
    };
    const auto open = [&] { fonts.Open(); };
    const auto close = [&] { fonts.Close(); };
    Compare("opening the dialog", kRounds, kLimit, open, open, close, install);
    const auto measure = [&](const char* what, const std::function<void()>& work) {
        Compare(what, kRounds, kLimit, work, work, close, [&](bool isMany) {
            install(isMany);
            open();
        });
    };
    measure("choosing all fonts", [&] { SendDlgItemMessageW(fonts.dialog, IDC_FONTS_ALL, BM_CLICK, 0, 0); });
    measure("storing the chosen fonts",
            [&] { fonts.session.TellCallback(CPSUICB_REASON_APPLYNOW, fonts.page); });
}

}  // namespace kzp::bench

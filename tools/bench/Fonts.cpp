// The fonts dialog with ten times as many fonts: what it does must grow with their number.
#include <windows.h>

#include <memory>

#include "pages/advanced/FontList.h"
#include "resources/resource.h"
#include "tests/support/ImportPatch.h"
#include "tools/bench/Bench.h"
#include "tools/driverhost/DocumentSession.h"

namespace kzp::bench {

namespace {

constexpr double kLimit = 12;
constexpr size_t kRounds = 7;
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
    test::WriteValue(HKEY_CURRENT_USER, test::kSettingsKey, L"FONTLIST", REG_BINARY, records.data(),
                     records.size() * sizeof(FontRecord));
}

// The driver's page in a window that stands for the sheet; the plug-in embeds its dialog in it.
class FontsPage {
  public:
    explicit FontsPage(HWND sheet) : m_plugIn(driverhost::BesideProgram(L"KZPWriterUI.dll")), m_sheet(sheet) {
        driverhost::SessionOptions options;
        options.needsPrinter = false;
        m_session = std::make_unique<driverhost::DocumentSession>(m_plugIn, std::move(options));
        m_session->PresentItems();
    }

    HMODULE PlugIn() const { return m_plugIn.Module(); }

    void Open(const std::vector<std::wstring>& families) {
        g_families = &families;
        m_page = CreateWindowExW(WS_EX_CONTROLPARENT, L"STATIC", L"", WS_CHILD | WS_VISIBLE, 0, 0, 460, 350,
                                 m_sheet, nullptr, nullptr, nullptr);
        m_session->TellCallback(CPSUICB_REASON_SETACTIVE, m_page);
        m_dialog = FindWindowExW(m_page, nullptr, L"#32770", nullptr);
        Require(m_dialog, "the fonts dialog does not open");
    }

    void Choose(int button) { SendMessageW(GetDlgItem(m_dialog, button), BM_CLICK, 0, 0); }
    void Commit() { m_session->TellCallback(CPSUICB_REASON_APPLYNOW, m_page); }

    void Close() {
        DestroyWindow(m_page);
        HandlePendingMessages();
    }

  private:
    driverhost::PlugIn m_plugIn;
    std::unique_ptr<driverhost::DocumentSession> m_session;
    HWND m_sheet;
    HWND m_page = nullptr;
    HWND m_dialog = nullptr;
};

}  // namespace

void MeasureFonts() {
    BeginChapter("The font list",
                 "The fonts dialog with 3,000 families beside the same with 300, half of them stored as "
                 "chosen; the list "
                 "control's own work included. The enumeration is replaced, so that both numbers are there.",
                 "3,000", "300");
    const test::ScratchRegistry registry;
    const ShownWindow window;
    FontsPage page(window.Get());
    const test::ImportPatch enumeration(page.PlugIn(), "EnumFontFamiliesW",
                                        test::AddressOf(&EnumerateFamilies));
    const std::vector<std::wstring> few = MakeFamilies(kFew), many = MakeFamilies(kMany);

    // Prepared untimed before each call, closed untimed behind it.
    const auto measure = [&](const char* what, auto&& prepare, auto&& work) {
        const auto timed = [&](const std::vector<std::wstring>& families) {
            StoreChoice(families);
            prepare(families);
            const double time = Time([&] { work(families); });
            page.Close();
            return time;
        };
        std::vector<double> fewTimes, manyTimes, ratios;
        timed(many);
        for (size_t round = 0; round < kRounds || (round < 4 * kRounds && Median(ratios) > kLimit); ++round) {
            fewTimes.push_back(timed(few));
            manyTimes.push_back(timed(many));
            ratios.push_back(manyTimes.back() / fewTimes.back());
        }
        Report(what, {Median(manyTimes), Median(fewTimes), Median(ratios)}, kLimit);
    };
    const auto open = [&](const std::vector<std::wstring>& families) { page.Open(families); };
    measure("opening the dialog", [](const auto&) {}, open);
    measure("choosing all fonts", open, [&](const auto&) { page.Choose(IDC_FONTS_ALL); });
    measure("storing the chosen fonts", open, [&](const auto&) { page.Commit(); });
}

}  // namespace kzp::bench

// The whole way of a user: every control of every page, Apply, a change of mind, OK; and a plug-in that is
// loaded afresh finds it all again.
#include <xmmintrin.h>

#include <clocale>
#include <optional>

#include "support/Spooler.h"
#include "tests/support/Files.h"
#include "tests/support/SheetTest.h"
#include "tools/driverhost/PrintCommand.h"
#include "tools/driverhost/Script.h"
#include "tools/driverhost/State.h"

namespace kzp::test {
namespace {

using driverhost::Format;
using States = driverhost::State;

// Everything stored, as the printer's next user would find it; the driver's items are in the device mode.
States StoredState() {
    const driverhost::PlugIn plugIn(driverhost::BesideProgram(L"KZPWriterUI.dll"));
    driverhost::DocumentSession session(plugIn, {});
    return driverhost::CaptureState(session);
}

// Plays the script, in which "%" stands for the folder, in a sheet of its own; behind OK a document is
// printed.
void Play(const std::vector<std::wstring>& lines, const std::wstring& folder) {
    EXPECT_EQ(nullptr, GetModuleHandleW(L"KZPWriterUI.dll")) << "nothing is remembered";
    HostedSheet host;
    driverhost::Script script(host.run, L".");
    for (std::wstring line : lines) {
        if (const size_t at = line.find(L'%'); at != std::wstring::npos)
            line.replace(at, 1, L"\"" + folder + L"\"");
        script.Add(line);
    }
    const bool ok = lines.back() == L"ok";
    EXPECT_EQ(ok ? CPSUI_OK : CPSUI_CANCEL, host.run.Show());
    if (ok)
        driverhost::PrintDocument(host.plugIn, host.session.Printer(), L"Document");
}

States Differences(const States& before, const States& after) {
    States changed;
    for (const auto& [name, value] : after) {
        const auto old = before.find(name);
        if (old == before.end() || old->second != value)
            changed[name] = value;
    }
    return changed;
}

std::wstring TextValue(const std::wstring& text) {
    return Format(L"REG_SZ, %d bytes: \"%ls\"", static_cast<int>(2 * text.size() + 1), text.c_str());
}

// What the user does, and what the next sheet shows of it.
const std::pair<const wchar_t*, const wchar_t*> kEverything[] = {
    {L"expect page 2", L"expect page 2"},
    {L"select 1243 \"User-defined size\"", L"expect 1243 text \"User-defined size\""},
    {L"click 3035", L"expect 3035 checked"},
    {L"type 1221 297.5", L""},
    {L"spin 1248 up", L"expect 1221 text 297.55"},
    {L"type 1224 210", L""},
    {L"spin 1249 down 2", L"expect 1224 text 209.90"},
    {L"type 3022 10", L""},
    {L"spin 3023 up", L"expect 3022 text 10.05"},
    {L"type 3025 12.5", L""},
    {L"spin 3026 down", L"expect 3025 text 12.45"},
    {L"type 3028 15", L""},
    {L"spin 3029 up 2", L"expect 3028 text 15.10"},
    {L"type 3031 15", L""},
    {L"spin 3032 down", L"expect 3031 text 14.95"},
    {L"select 3042 \"600 x 600 dpi\"", L"expect 3042 text \"600 x 600 dpi\""},
    {L"select 3044 \"256 colors\"", L"expect 3044 text \"256 colors\""},
    {L"click 3039", L"expect 3039 checked"},
    {L"click 3046", L"expect 3046 unchecked"},
    {L"click 3049", L"expect 3048 checked"},
    {L"page 3", L"page 3"},
    {L"click 1028", L"expect 1028 checked"},
    {L"browse %", L""},
    {L"click 1017", L""},
    {L"click 1238", L"expect 1238 unchecked"},
    {L"page 1", L"page 1"},
    {L"click 1262", L""},
    {L"click 1264", L"expect 1264 checked"},
};

// What a program can set for the thread and the process that the plug-in runs in, all of it against it.
class BentHost {
  public:
    BentHost() {
        GetCurrentDirectoryW(MAX_PATH, m_folder);
        SetCurrentDirectoryW(L"C:\\");
        EXPECT_NE(nullptr, std::setlocale(LC_ALL, "German_Germany.1252"));
        SetThreadLocale(MAKELANGID(LANG_TURKISH, SUBLANG_TURKISH_TURKEY));
        SetErrorMode(0);
        // Rounding down, and ended by what is invalid, by a division by zero and by an overflow.
        _mm_setcsr(kSse);
        asm volatile("fldcw %0" : : "m"(kX87));
        SetLastError(ERROR_CRC);
    }
    ~BentHost() {
        EXPECT_EQ(kSse, _mm_getcsr() & ~unsigned{_MM_EXCEPT_MASK}) << "what the host has set stays set";
        unsigned short x87 = 0;
        asm volatile("fnstcw %0" : "=m"(x87));
        EXPECT_EQ(kX87, x87);
        EXPECT_EQ(0u, GetErrorMode() | GetThreadErrorMode());
        _mm_setcsr(0x1F80);
        asm volatile("fninit");
        SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
        SetThreadLocale(LOCALE_USER_DEFAULT);
        std::setlocale(LC_ALL, "C");
        SetCurrentDirectoryW(m_folder);
    }
    BentHost(const BentHost&) = delete;
    BentHost& operator=(const BentHost&) = delete;

  private:
    static constexpr unsigned kSse = (0x1F80 & ~0x0680) | _MM_ROUND_DOWN;
    static constexpr unsigned short kX87 = 0x0672;
    wchar_t m_folder[MAX_PATH] = {};
};

// Margins that a host with exceptions for invalid numbers cannot even load without ending.
void StoreSignalingMargins() {
    const UniquePrinter printer = OpenPrinterWithAllAccess(driverhost::kDefaultPrinter);
    DWORD margins[4] = {0x7F800001, 0x7F800001, 0x7F800001, 0x7F800001};
    EXPECT_EQ(DWORD{ERROR_SUCCESS}, SetPrinterDataW(printer.Get(), SpoolerText(L"KZP Margin"), REG_BINARY,
                                                    reinterpret_cast<BYTE*>(margins), sizeof margins));
}

// One sheet takes it all in, a second one finds it again, a third one in the other unit applies it, and a
// document is printed.
TEST(Journey, IsStoredFoundAgainAndKeptByCancelAlsoInAHostThatBendsEverything) {
    const TemporaryFolder folder;
    const States expected = {
        {L"device mode: form", L"\"User Defined\" (paper 280)"},
        {L"device mode: quality", L"600 dpi"},
        {L"device mode: orientation", L"landscape"},
        {L"device mode: margins", L"left 10.05, top 15.10, right 12.45, bottom 14.95 mm"},
        {L"settings: LaunchKZPView", TextValue(L"NO")},
        {L"settings: PROMPTFILENAME", TextValue(L"No")},
        {L"settings: PathDirs", TextValue(folder.Path() + L";")},
        {L"settings: DefaultDir", TextValue(folder.Path())},
        {L"settings: OutputType", L"REG_DWORD, 4 bytes: 2"},
        {L"printer data: KZP Margin",
         L"REG_BINARY, 16 bytes: left 10.05, top 15.10, right 12.45, bottom 14.95 mm"},
        {L"form: User Defined",
         L"297.550 x 209.900 mm, imageable 0.000, 0.000 to 297.550, 209.900 mm, flags 0"},
        {L"driver items: CustomUnit", L"Millimeters (1)"},
        {L"driver items: ColorMode", L"256 colors (1)"},
    };
    States last[2];
    for (const bool bent : {false, true}) {
        SCOPED_TRACE(bent);
        const ScratchRegistry registry;
        standins::spooler::SetUpPrinter({.name = driverhost::kDefaultPrinter});
        StoreSignalingMargins();
        const auto play = [&](const std::vector<std::wstring>& lines) {
            std::optional<BentHost> host;
            if (bent)
                host.emplace();
            Play(lines, folder.Path());
            host.reset();
            return StoredState();
        };
        std::vector<std::wstring> everything;
        std::vector<std::wstring> again;
        for (const auto& [use, found] : kEverything) {
            everything.emplace_back(use);
            again.emplace_back(found);
        }
        everything.insert(everything.end(), {L"apply", L"page 2", L"click 3048", L"ok"});
        // A change of mind; nothing of it lasts but the folder.
        again.insert(again.end(), {L"page 2", L"select 1243 A4", L"click 3034", L"click 3038", L"click 3046",
                                   L"click 3049", L"type 3022 1", L"page 3", L"click 1238", L"click 1034",
                                   L"page 1", L"click 1262", L"cancel"});
        const States stored = play(everything);
        EXPECT_EQ(States{}, Differences(stored, expected));
        EXPECT_EQ((States{{L"settings: DefaultDir", TextValue(DocumentsFolder())}}),
                  Differences(stored, play(again)))
            << "only the choice of the documents folder is stored at once";
        last[bent] = play({L"click 3034", L"spin 3023 up", L"ok"});
    }
    EXPECT_EQ(L"left 11.43, top 14.99, right 12.45, bottom 14.99 mm", last[0].at(L"device mode: margins"));
    EXPECT_EQ(States{}, Differences(last[0], last[1]));
}

}  // namespace
}  // namespace kzp::test

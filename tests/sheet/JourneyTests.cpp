// The whole way of a user: every control of every page, Apply, a change of mind, OK; and a plug-in that is
// loaded afresh finds it all again. All of it in a host that bends what it can.
#include <xmmintrin.h>

#include <clocale>
#include <sstream>

#include "support/Spooler.h"
#include "tests/support/Files.h"
#include "tests/support/SheetTest.h"
#include "tools/driverhost/Script.h"
#include "tools/driverhost/State.h"

namespace kzp::test {
namespace {

using driverhost::State;

// What a program can set for the thread and the process that the plug-in runs in, all of it against it.
class BentHost {
  public:
    BentHost() {
        EXPECT_NE(nullptr, std::setlocale(LC_ALL, "German_Germany.1252"));
        SetThreadLocale(MAKELANGID(LANG_TURKISH, SUBLANG_TURKISH_TURKEY));
        SetErrorMode(0);
        // Rounding down, and ended by what is invalid, by a division by zero and by an overflow.
        _mm_setcsr(kSse);
        asm volatile("fldcw %0" : : "m"(kX87));
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
    }
    BentHost(const BentHost&) = delete;
    BentHost& operator=(const BentHost&) = delete;

  private:
    static constexpr unsigned kSse = (0x1F80 & ~0x0680) | _MM_ROUND_DOWN;
    static constexpr unsigned short kX87 = 0x0672;
};

// Plays the commands of the script in a sheet of its own, where the browser chooses the folder. Answers
// everything stored then, as the printer's next user would find it; the driver's items are in the device
// mode.
State Play(const std::wstring& script, const std::wstring& folder) {
    EXPECT_EQ(nullptr, GetModuleHandleW(L"KZPWriterUI.dll")) << "nothing is remembered";
    {
        const BentHost bent;
        HostedSheet host({.plugInItem = true});
        host.run.AnswerNextBrowser(folder);
        driverhost::Script played(host.run, L".");
        std::wistringstream commands(script);
        for (std::wstring command; std::getline(commands, command, L';');)
            played.Add(command);
        EXPECT_EQ(script.ends_with(L"ok") ? CPSUI_OK : CPSUI_CANCEL, host.run.Show());
    }
    const driverhost::PlugIn plugIn;
    driverhost::DocumentSession session(plugIn, {});
    return driverhost::CaptureState(session);
}

State Differences(const State& before, const State& after) {
    State changed;
    for (const auto& [name, value] : after) {
        const auto old = before.find(name);
        if (old == before.end() || old->second != value)
            changed[name] = value;
    }
    return changed;
}

std::wstring TextValue(const std::wstring& text) {
    return driverhost::Format(L"REG_SZ, %d bytes: \"%ls\"", static_cast<int>(2 * text.size() + 1),
                              text.c_str());
}

// Margins that a host with exceptions for invalid numbers cannot even load without ending.
void StoreSignalingMargins() {
    const UniquePrinter printer = OpenPrinterWithAllAccess(driverhost::kDefaultPrinter);
    DWORD margins[4] = {0x7F800001, 0x7F800001, 0x7F800001, 0x7F800001};
    EXPECT_EQ(DWORD{ERROR_SUCCESS}, SetPrinterDataW(printer.Get(), SpoolerText(L"KZP Margin"), REG_BINARY,
                                                    reinterpret_cast<BYTE*>(margins), sizeof margins));
}

using Journey = SheetTest;

TEST_F(Journey, IsStoredFoundAgainAndKeptByCancelInAHostThatBendsEverything) {
    const TemporaryFolder folder;
    StoreSignalingMargins();
    const State stored = Play(
        L"expect page 2; select 1243 \"User-defined size\"; click 3035;"
        L"type 1221 297.5; spin 1248 up; type 1224 210; spin 1249 down 2;"
        L"type 3022 10; spin 3023 up; type 3025 12.5; spin 3026 down;"
        L"type 3028 15; spin 3029 up 2; type 3031 15; spin 3032 down;"
        L"select 3042 \"600 x 600 dpi\"; select 3044 \"256 colors\";"
        L"click 3039; click 3046; click 3049;"
        L"page 3; click 1028; click 1017; click 1238; page 1; click 1262; click 1264;"
        L"apply; page 2; click 3048; ok",
        folder.Path());
    const State expected = {
        {L"device mode: form", L"\"User Defined\" (paper 280)"},
        {L"device mode: quality", L"600 dpi"},
        {L"device mode: orientation", L"landscape"},
        {L"device mode: margins", L"left 10.05, top 15.10, right 12.45, bottom 14.95 mm"},
        {L"settings: LaunchKZPView", TextValue(L"NO")},
        {L"settings: PROMPTFILENAME", TextValue(L"No")},
        {L"settings: PathDirs", TextValue(folder.Path() + L";")},
        {L"settings: DefaultDir", TextValue(folder.Path())},
        {L"printer data: BRMK_KZPWRITER_UI_VALUE", L"REG_DWORD, 4 bytes: 1"},
        {L"settings: OutputType", L"REG_DWORD, 4 bytes: 2"},
        {L"printer data: KZP Margin",
         L"REG_BINARY, 16 bytes: left 10.05, top 15.10, right 12.45, bottom 14.95 mm"},
        {L"form: User Defined",
         L"297.550 x 209.900 mm, imageable 0.000, 0.000 to 297.550, 209.900 mm, flags 0"},
        {L"driver items: CustomUnit", L"Millimeters (1)"},
        {L"driver items: ColorMode", L"256 colors (1)"},
    };
    EXPECT_EQ(State{}, Differences(stored, expected));

    // A change of mind; nothing of it lasts but the folder.
    const State cancelled = Play(
        L"expect 1243 text \"User-defined size\"; expect 3035 checked;"
        L"expect 1221 text 297.55; expect 1224 text 209.90; expect 3022 text 10.05;"
        L"expect 3025 text 12.45; expect 3028 text 15.10; expect 3031 text 14.95;"
        L"expect 3042 text \"600 x 600 dpi\"; expect 3044 text \"256 colors\";"
        L"expect 3039 checked; expect 3046 unchecked; expect 3048 checked;"
        L"select 1243 A4; click 3034; click 3038; click 3046; click 3049; type 3022 1;"
        L"page 3; expect 1028 checked; expect 1238 unchecked; click 1238; click 1034;"
        L"page 1; expect 1264 checked; click 1262; cancel",
        L"");
    EXPECT_EQ((State{{L"settings: DefaultDir", TextValue(DocumentsFolder())}}),
              Differences(stored, cancelled))
        << "only the choice of the documents folder is stored at once";

    EXPECT_EQ(L"left 11.43, top 14.99, right 12.45, bottom 14.99 mm",
              Play(L"click 3034; spin 3023 up; ok", L"").at(L"device mode: margins"));
}

}  // namespace
}  // namespace kzp::test

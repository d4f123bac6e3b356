// What the plug-in's object takes from the printer's default device mode, and when it keeps what it has.
#include <cstring>

#include "settings/CKZPWriterSettings.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/SheetTest.h"

namespace kzp::test {
namespace {

namespace spooler = standins::spooler;

DEVMODEW FineLandscape() {
    DEVMODEW mode = {};
    mode.dmSize = sizeof mode;
    mode.dmSpecVersion = DM_SPECVERSION;
    mode.dmPrintQuality = 600;
    mode.dmOrientation = DMORIENT_LANDSCAPE;
    mode.dmPaperSize = DMPAPER_A4;
    mode.dmColor = DMCOLOR_COLOR;
    return mode;
}

// Negative qualities are independent of the device, and taken as very fine.
TEST(QualityIndex, IsTheLargestListedResolutionNotAboveTheDpi) {
    const std::pair<int, DWORD> cases[] = {{0, 0},    {199, 0},        {200, 0},        {299, 0},  {300, 1},
                                           {400, 2},  {599, 2},        {600, 3},        {1199, 3}, {1200, 4},
                                           {2400, 4}, {DMRES_HIGH, 4}, {DMRES_DRAFT, 4}};
    for (const auto& [dpi, index] : cases)
        EXPECT_EQ(index, QualityIndexFromDpi(static_cast<WORD>(dpi))) << dpi;
}

class PrinterSettings : public SheetTest {
  protected:
    void SetUpPrinterWith(const DEVMODEW* mode) {
        printer.Reset();
        spooler::SetUpPrinter({.name = driverhost::kDefaultPrinter, .deviceMode = mode});
        EXPECT_TRUE(OpenPrinterW(const_cast<PWSTR>(driverhost::kDefaultPrinter), printer.Put(), nullptr));
    }
    void ExpectFineLandscape() {
        EXPECT_EQ(3u, settings.QualityIndex());
        EXPECT_FALSE(settings.Portrait());
        EXPECT_EQ(DMPAPER_A4, settings.PaperSize());
        EXPECT_EQ(DMCOLOR_COLOR, settings.Color());
    }

    UniquePrinter printer;
    CKZPWriterSettings settings;
};

TEST_F(PrinterSettings, MirrorTheDeviceModeAndOutliveItsLoss) {
    settings.LoadFromPrinter(nullptr);
    EXPECT_EQ(2u, settings.QualityIndex()) << "as it starts";
    EXPECT_EQ(280, settings.PaperSize());
    DEVMODEW mode = FineLandscape();
    SetUpPrinterWith(&mode);
    settings.LoadFromPrinter(printer.Get());
    EXPECT_EQ(printer.Get(), settings.Printer());
    ExpectFineLandscape();

    mode.dmOrientation = DMORIENT_PORTRAIT;
    mode.dmPrintQuality = DMRES_HIGH;
    mode.dmColor = -1;
    SetUpPrinterWith(&mode);
    settings.LoadFromPrinter(printer.Get());
    EXPECT_TRUE(settings.Portrait());
    EXPECT_EQ(4u, settings.QualityIndex());
    EXPECT_EQ(-1, settings.Color()) << "with its sign";

    mode = FineLandscape();
    SetUpPrinterWith(&mode);
    settings.LoadFromPrinter(printer.Get());
    for (const DWORD passing : {0u, 1u}) {
        SCOPED_TRACE(passing);
        spooler::FailCall(L"GetPrinterW", ERROR_ACCESS_DENIED, passing);
        settings.LoadFromPrinter(printer.Get());
        ExpectFineLandscape();
    }
    spooler::ClearFailures();
    SetUpPrinterWith(nullptr);
    settings.LoadFromPrinter(printer.Get());
    ExpectFineLandscape();
    settings.LoadFromPrinter(nullptr);
    ExpectFineLandscape();
    EXPECT_EQ(nullptr, settings.Printer()) << "the handle is taken in any case";
}

// A spooler that needs an odd number of bytes and puts the device mode at an odd address at their very end.
std::vector<DWORD> g_offered;

WINBOOL WINAPI OddGetPrinter(HANDLE, DWORD level, LPBYTE buffer, DWORD bytes, LPDWORD needed) {
    constexpr DWORD kNeeded = sizeof(PRINTER_INFO_2W) + sizeof(DEVMODEW) + 1;
    EXPECT_EQ(2u, level);
    g_offered.push_back(bytes);
    *needed = kNeeded;
    if (bytes < kNeeded) {
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return FALSE;
    }
    const DEVMODEW mode = FineLandscape();
    BYTE* const place = buffer + kNeeded - sizeof mode;
    std::memcpy(place, &mode, sizeof mode);
    PRINTER_INFO_2W info = {};
    info.pDevMode = reinterpret_cast<PDEVMODEW>(place);
    std::memcpy(buffer, &info, sizeof info);
    return TRUE;
}

TEST_F(PrinterSettings, AskForExactlyTheBytesThatAreNeeded) {
    const std::vector<DWORD> expected = {0, sizeof(PRINTER_INFO_2W) + sizeof(DEVMODEW) + 1};
    const ImportPatch patch(GetModuleHandleW(nullptr), "GetPrinterW", AddressOf(&OddGetPrinter));
    g_offered.clear();
    settings.LoadFromPrinter(reinterpret_cast<HANDLE>(0x1234));
    EXPECT_EQ(expected, g_offered);
    ExpectFineLandscape();

    const driverhost::PlugIn plugIn(driverhost::BesideProgram(L"KZPWriterUI.dll"));
    const auto object = plugIn.CreateObject();
    const ImportPatch delivered(plugIn.Module(), "GetPrinterW", AddressOf(&OddGetPrinter));
    OEMCUIPPARAM param = {};
    param.hPrinter = reinterpret_cast<HANDLE>(0x1234);
    g_offered.clear();
    EXPECT_EQ(S_OK, object->CommonUIProp(OEMCUIP_DOCPROP, &param));
    EXPECT_EQ(expected, g_offered) << "and so does the object, with each sheet's printer";
}

}  // namespace
}  // namespace kzp::test

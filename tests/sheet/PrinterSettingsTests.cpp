// What the plug-in's object takes from the printer's default device mode, and when it keeps what it has.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "settings/CKZPWriterSettings.h"
#include "tests/support/ImportPatch.h"
#include "tools/driverhost/PlugIn.h"

namespace kzp::test {
namespace {

// A spooler that needs an odd number of bytes and puts the device mode at an odd address at their very end.
constexpr DWORD kNeeded = sizeof(PRINTER_INFO_2W) + sizeof(DEVMODEW) + 1;
struct {
    DEVMODEW mode = {};
    bool hasMode = true;
    size_t answers = 2;  // calls that do not fail
    std::vector<DWORD> offered;
} g_printer;

WINBOOL WINAPI OddGetPrinter(HANDLE, DWORD level, LPBYTE buffer, DWORD bytes, LPDWORD needed) {
    EXPECT_EQ(2u, level);
    g_printer.offered.push_back(bytes);
    if (g_printer.offered.size() > g_printer.answers)
        return FALSE;
    *needed = kNeeded;
    if (bytes < kNeeded)
        return FALSE;
    PRINTER_INFO_2W info = {};
    if (g_printer.hasMode)
        info.pDevMode = reinterpret_cast<PDEVMODEW>(buffer + kNeeded - sizeof g_printer.mode);
    std::memcpy(buffer, &info, sizeof info);
    std::memcpy(buffer + kNeeded - sizeof g_printer.mode, &g_printer.mode, sizeof g_printer.mode);
    return TRUE;
}

// Negative qualities are independent of the device, and taken as very fine.
TEST(QualityIndex, IsTheLargestListedResolutionNotAboveTheDpi) {
    const std::pair<int, DWORD> cases[] = {{0, 0},    {199, 0},        {200, 0},        {299, 0},  {300, 1},
                                           {400, 2},  {599, 2},        {600, 3},        {1199, 3}, {1200, 4},
                                           {2400, 4}, {DMRES_HIGH, 4}, {DMRES_DRAFT, 4}};
    for (const auto& [dpi, index] : cases)
        EXPECT_EQ(index, QualityIndexFromDpi(static_cast<WORD>(dpi))) << dpi;
}

TEST(PrinterSettings, MirrorTheDeviceModeAndOutliveItsLoss) {
    const ImportPatch patch(GetModuleHandleW(nullptr), "GetPrinterW", AddressOf(&OddGetPrinter));
    const HANDLE printer = reinterpret_cast<HANDLE>(0x1234);
    const struct {
        HANDLE printer;
        short quality, orientation, paper, color;
        bool hasMode;
        size_t answers;
        DWORD index;
        bool portrait;
        short paperSize, colorMode;
    } cases[] = {
        {nullptr, 600, 1, 9, 2, true, 2, 2, false, 280, 0},  // as they start
        {printer, 600, 2, 9, 2, true, 2, 3, false, 9, 2},
        {printer, DMRES_HIGH, 1, 5, -1, true, 2, 4, true, 5, -1},  // the colour with its sign
        {printer, 300, 2, 8, 1, true, 0, 4, true, 5, -1},
        {printer, 300, 2, 8, 1, true, 1, 4, true, 5, -1},
        {printer, 300, 2, 8, 1, false, 2, 4, true, 5, -1},
        {nullptr, 300, 2, 8, 1, true, 2, 4, true, 5, -1},
    };
    CKZPWriterSettings settings;
    for (const auto& expected : cases) {
        SCOPED_TRACE(&expected - cases);
        g_printer = {.hasMode = expected.hasMode, .answers = expected.answers, .offered = {}};
        g_printer.mode.dmPrintQuality = expected.quality;
        g_printer.mode.dmOrientation = expected.orientation;
        g_printer.mode.dmPaperSize = expected.paper;
        g_printer.mode.dmColor = expected.color;
        settings.LoadFromPrinter(expected.printer);
        EXPECT_EQ(expected.printer, settings.Printer()) << "the handle is taken in any case";
        EXPECT_EQ(expected.index, settings.QualityIndex());
        EXPECT_EQ(expected.portrait, settings.Portrait());
        EXPECT_EQ(expected.paperSize, settings.PaperSize());
        EXPECT_EQ(expected.colorMode, settings.Color());
    }

    const driverhost::PlugIn plugIn(driverhost::BesideProgram(L"KZPWriterUI.dll"));
    const auto object = plugIn.CreateObject();
    const ImportPatch delivered(plugIn.Module(), "GetPrinterW", AddressOf(&OddGetPrinter));
    OEMCUIPPARAM param = {};
    param.hPrinter = printer;
    g_printer = {};
    EXPECT_EQ(S_OK, object->CommonUIProp(OEMCUIP_DOCPROP, &param));
    EXPECT_EQ((std::vector<DWORD>{0, kNeeded}), g_printer.offered) << "exactly the bytes that are needed";
}

}  // namespace
}  // namespace kzp::test

// What the plug-in's object takes from the printer's default device mode, and when it keeps what it has.
#include <gtest/gtest.h>

#include <cstring>
#include <tuple>

#include "settings/CKZPWriterSettings.h"
#include "tests/support/ImportPatch.h"
#include "tools/driverhost/PlugIn.h"

namespace kzp::test {
namespace {

// A spooler that needs an odd number of bytes and puts the device mode at an odd address at their very end.
struct {
    DEVMODEW mode;
    bool hasMode;
    int answers;
} g_printer;

WINBOOL WINAPI OddGetPrinter(HANDLE, DWORD level, LPBYTE buffer, DWORD bytes, LPDWORD needed) {
    constexpr DWORD kPlace = sizeof(PRINTER_INFO_2W) + 1;
    EXPECT_EQ(2u, level);
    *needed = kPlace + sizeof g_printer.mode;
    if (bytes < *needed)
        return FALSE;
    EXPECT_EQ(*needed, bytes);
    ++g_printer.answers;
    PRINTER_INFO_2W info = {};
    info.pDevMode = g_printer.hasMode ? reinterpret_cast<PDEVMODEW>(buffer + kPlace) : nullptr;
    std::memcpy(buffer, &info, sizeof info);
    std::memcpy(buffer + kPlace, &g_printer.mode, sizeof g_printer.mode);
    return TRUE;
}

TEST(PrinterSettings, MirrorTheDeviceModeAndOutliveItsLoss) {
    const ImportPatch patch(GetModuleHandleW(nullptr), "GetPrinterW", AddressOf(&OddGetPrinter));
    const HANDLE printer = reinterpret_cast<HANDLE>(0x1234);
    using Mirrored = std::tuple<HANDLE, DWORD, bool, short, short>;
    CKZPWriterSettings settings;
    const auto load = [&settings](HANDLE from) {
        settings.LoadFromPrinter(from);
        return Mirrored(settings.Printer(), settings.QualityIndex(), settings.Portrait(),
                        settings.PaperSize(), settings.Color());
    };
    EXPECT_EQ(Mirrored(nullptr, 2, false, 280, 0), load(nullptr)) << "as they start";
    g_printer = {.mode = {}, .hasMode = true, .answers = 0};
    g_printer.mode.dmPrintQuality = 1199;
    g_printer.mode.dmOrientation = DMORIENT_PORTRAIT;
    g_printer.mode.dmPaperSize = DMPAPER_A4;
    g_printer.mode.dmColor = -1;
    EXPECT_EQ(Mirrored(printer, 3, true, DMPAPER_A4, -1), load(printer));
    g_printer = {};
    EXPECT_EQ(Mirrored(printer, 3, true, DMPAPER_A4, -1), load(printer)) << "without a device mode";

    const driverhost::PlugIn plugIn;
    const auto object = plugIn.CreateObject();
    const ImportPatch delivered(plugIn.Module(), "GetPrinterW", AddressOf(&OddGetPrinter));
    OEMCUIPPARAM param = {};
    param.hPrinter = printer;
    g_printer = {};
    EXPECT_EQ(S_OK, object->CommonUIProp(OEMCUIP_DOCPROP, &param));
    EXPECT_EQ(1, g_printer.answers) << "exactly the bytes that are needed";
}

}  // namespace
}  // namespace kzp::test

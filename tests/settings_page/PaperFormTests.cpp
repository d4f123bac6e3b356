// The form "User Defined" in the spooler.
#include <windows.h>
#include <winspool.h>

#include <climits>
#include <cwchar>

#include "pages/settings/PaperForms.h"
#include "settings/SpoolerForms.h"
#include "tests/settings_page/SettingsPageTest.h"

namespace kzp::test {
namespace {

namespace spooler = standins::spooler;

// A sheet's state without a sheet: the open printer, and a driver whose first item is the paper.
class PaperForms : public SettingsPageTest {
  protected:
    PaperForms() {
        PRINTER_DEFAULTSW defaults = {nullptr, nullptr, PRINTER_ALL_ACCESS};
        OpenPrinterW(const_cast<PWSTR>(driverhost::kDefaultPrinter), printer.Put(), &defaults);
        param.hPrinter = printer.Get();
        param.pDrvOptItems = tree.Items();
        sheet.CurrentUIParam = &param;
        sheet.CurrentPrinterName = driverhost::kDefaultPrinter;
    }
    ~PaperForms() override {
        spooler::StopLog();
        spooler::ClearFailures();
    }

    void ExpectStored(LONG width, LONG height) const {
        const SIZEL stored = ReadFormSize(printer.Get(), kCustomFormName).value_or(SIZEL{});
        EXPECT_EQ(stored.cx, width);
        EXPECT_EQ(stored.cy, height);
    }

    UniquePrinter printer;
    OEMCUIPPARAM param = {};
    SheetState sheet;
};

TEST_F(PaperForms, AreCreatedOnceWhenMissingAndFailToBeInSilence) {
    spooler::RemoveForm(kCustomFormName);
    spooler::FailCall(L"AddFormW", ERROR_ACCESS_DENIED);
    EXPECT_EQ(EnsureCustomForm(sheet), 1);
    ExpectStored(0, 0);
    spooler::ClearFailures();
    EXPECT_FALSE(AddCustomForm(L"No such printer", kCustomFormName, 2159, 2667));
    spooler::StartLog();
    EXPECT_EQ(EnsureCustomForm(sheet), 1);
    ExpectStored(215900, 266700);
    EXPECT_EQ(EnsureCustomForm(sheet), 1);
    EXPECT_EQ(spooler::ReadLog(), (Texts{L"AddFormW User Defined"}));
    spooler::RemoveForm(kCustomFormName);
    sheet.CurrentUIParam = nullptr;
    EXPECT_EQ(EnsureCustomForm(sheet), 1) << "the name of the printer is enough";
    ExpectStored(215900, 266700);
}

TEST_F(PaperForms, AreRewrittenOnlyWithAnotherSize) {
    const std::wstring endless(200, L'9');
    const struct {
        const wchar_t *width = L"20", *height = L"20";
        DWORD unit = kInches;
        SIZEL stored = {215900, 266700};
        LONG paper = 7;
        DWORD items = 1;
        bool printer = true, refused = false;
    } cases[] = {
        {L"8.50", L"10.50"},
        {L"215.9", L"266.70", kMillimeters},
        {.paper = 0},
        {.paper = 99},
        {.items = 0},
        {.printer = false},
        {.refused = true},
        {L"215.9", L"100", kMillimeters, {215900, 100000}},
        {L"1.02", L"82.53", kInches, {25907, 2096261}},  // in single precision, cut
        {endless.c_str(), L"20", kInches, {LONG_MAX, 508000}},
    };
    for (const auto& expected : cases) {
        SCOPED_TRACE(&expected - cases);
        std::wcscpy(sheet.Measures.widthText, expected.width);
        std::wcscpy(sheet.Measures.heightText, expected.height);
        sheet.Measures.unit = expected.unit;
        tree.Items()[0].Sel = expected.paper;
        param.cDrvOptItems = expected.items;
        param.hPrinter = expected.printer ? printer.Get() : nullptr;
        if (expected.refused)
            spooler::FailCall(L"SetFormW", ERROR_ACCESS_DENIED);
        EXPECT_EQ(CommitCustomForm(sheet.Measures, param) != 0, expected.stored.cy != 266700);
        spooler::ClearFailures();
        ExpectStored(expected.stored.cx, expected.stored.cy);
    }
}

}  // namespace
}  // namespace kzp::test

// The form "User Defined" in the spooler.
#include <windows.h>
#include <winspool.h>

#include <cwchar>
#include <vector>

#include "pages/settings/PaperForms.h"
#include "settings/SpoolerForms.h"
#include "tests/settings_page/SettingsPageTest.h"
#include "tools/standins/spooler/SpoolerControl.h"

namespace kzp::test {
namespace {

namespace spooler = standins::spooler;

// A sheet's state without a sheet: the open printer, and a driver whose first item is the paper.
class PaperForms : public SettingsPageTest {
  protected:
    PaperForms() {
        PRINTER_DEFAULTSW defaults = {nullptr, nullptr, PRINTER_ALL_ACCESS};
        OpenPrinterW(const_cast<PWSTR>(driverhost::kDefaultPrinter), printer.Put(), &defaults);
        tree.Find("PaperSize")->Sel = 7;
        param.hPrinter = printer.Get();
        param.pDrvOptItems = tree.Items();
        param.cDrvOptItems = tree.Count();
        sheet.CurrentUIParam = &param;
        sheet.CurrentPrinterName = driverhost::kDefaultPrinter;
    }
    ~PaperForms() override {
        spooler::StopLog();
        spooler::ClearFailures();
    }

    // Flags, size and imageable area of the stored form; empty without one.
    std::vector<LONG> StoredForm() const {
        BYTE block[512];
        DWORD bytes = 0;
        if (!GetFormW(printer.Get(), const_cast<PWSTR>(kCustomFormName), 1, block, sizeof block, &bytes))
            return {};
        const auto& form = *reinterpret_cast<const FORM_INFO_1W*>(block);
        const RECTL& area = form.ImageableArea;
        return {static_cast<LONG>(form.Flags),
                form.Size.cx,
                form.Size.cy,
                area.left,
                area.top,
                area.right,
                area.bottom};
    }
    int CommitTyped(const wchar_t* width, const wchar_t* height, DWORD unit = kInches) {
        std::wcscpy(sheet.Measures.widthText, width);
        std::wcscpy(sheet.Measures.heightText, height);
        sheet.Measures.unit = unit;
        return CommitCustomForm(sheet.Measures, param);
    }

    UniquePrinter printer;
    OEMCUIPPARAM param = {};
    SheetState sheet;
};

const std::vector<LONG> kDefaultForm = {FORM_USER, 215900, 266700, 0, 0, 215900, 266700};

TEST_F(PaperForms, AreCreatedOnceWhenMissing) {
    spooler::RemoveForm(kCustomFormName);
    ASSERT_TRUE(StoredForm().empty());
    spooler::StartLog();
    EXPECT_EQ(EnsureCustomForm(sheet), 1);
    EXPECT_EQ(StoredForm(), kDefaultForm);
    EXPECT_EQ(EnsureCustomForm(sheet), 1);
    EXPECT_EQ(spooler::ReadLog(), (Texts{L"AddFormW User Defined"}));
}

TEST_F(PaperForms, FailToBeCreatedInSilence) {
    spooler::RemoveForm(kCustomFormName);
    spooler::FailCall(L"AddFormW", ERROR_ACCESS_DENIED);
    EXPECT_EQ(EnsureCustomForm(sheet), 1);
    EXPECT_TRUE(StoredForm().empty());
    spooler::ClearFailures();
    EXPECT_FALSE(AddCustomForm(L"No such printer", kCustomFormName, 2159, 2667));
    sheet.CurrentUIParam = nullptr;
    EXPECT_EQ(EnsureCustomForm(sheet), 1) << "the name of the printer is enough";
    EXPECT_EQ(StoredForm(), kDefaultForm);
}

TEST_F(PaperForms, AreRewrittenOnlyWithAnotherSize) {
    spooler::StartLog();
    EXPECT_EQ(CommitTyped(L"8.50", L"10.50"), 0);
    EXPECT_EQ(CommitTyped(L"215.9", L"266.70", kMillimeters), 0);
    EXPECT_EQ(spooler::ReadLog(), Texts());
    EXPECT_NE(CommitTyped(L"215.9", L"100", kMillimeters), 0);
    EXPECT_EQ(StoredForm(), (std::vector<LONG>{FORM_USER, 215900, 100000, 0, 0, 215900, 100000}));
    EXPECT_NE(CommitTyped(L"8.27", L"11.69"), 0);
    // 8.27 x 254 x 100, each product in single precision, cut.
    const volatile float width = 8.27f * 254.0f;
    EXPECT_EQ(StoredForm()[1], static_cast<LONG>(width * 100.0f));
    EXPECT_EQ(spooler::ReadLog().size(), 2u);
}

TEST_F(PaperForms, AreLeftAloneForAStandardPaperAndWithoutAPrinter) {
    for (const LONG paper : {0, 99}) {
        param.pDrvOptItems[0].Sel = paper;
        EXPECT_EQ(CommitTyped(L"20", L"20"), 0) << paper;
    }
    param.pDrvOptItems[0].Sel = 7;
    param.cDrvOptItems = 0;
    EXPECT_EQ(CommitTyped(L"20", L"20"), 0);
    param.cDrvOptItems = 1;
    param.hPrinter = nullptr;
    EXPECT_EQ(CommitTyped(L"20", L"20"), 0);
    EXPECT_EQ(StoredForm(), kDefaultForm);
}

TEST_F(PaperForms, SayWhenTheSpoolerRefusesAndCutWhatItCannotHold) {
    const std::wstring endless(200, L'9');
    spooler::FailCall(L"SetFormW", ERROR_ACCESS_DENIED);
    EXPECT_EQ(CommitTyped(endless.c_str(), L"20"), 0);
    EXPECT_EQ(StoredForm(), kDefaultForm);
    spooler::ClearFailures();
    EXPECT_NE(CommitTyped(endless.c_str(), L"20"), 0);
    EXPECT_EQ(StoredForm()[1], LONG_MAX);
}

}  // namespace
}  // namespace kzp::test

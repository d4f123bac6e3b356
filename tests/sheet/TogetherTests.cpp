// More than one sheet in a process: on one thread, one within the other's messages, and on several; beside
// the printer's properties; after sheets that never came or failed. None touches what another driver call has
// freed, and each commits its own.
#include <cstdlib>
#include <cstring>
#include <memory>
#include <thread>

#include "resources/resource.h"
#include "tests/sheet/DrivenSheet.h"
#include "tests/support/Counters.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/SheetTest.h"

namespace kzp::test {
namespace {

using Floats = std::vector<float>;

struct Stored {
    HANDLE printer;
    std::wstring name;
    Floats contents;
};
std::vector<Stored> g_stored;  // written by one thread at a time

DWORD WINAPI NotePrinterData(HANDLE printer, LPWSTR name, DWORD type, LPBYTE data, DWORD bytes) {
    Floats contents(bytes / sizeof(float));
    if (type == REG_BINARY)
        std::memcpy(contents.data(), data, bytes);
    g_stored.push_back({printer, name, contents});
    return ERROR_SUCCESS;
}

WINBOOL WINAPI NoForm(HANDLE, LPWSTR, DWORD, LPBYTE, DWORD, LPDWORD) {
    return FALSE;
}

bool g_refuseDialogs = false;

HWND WINAPI CreateUnlessRefused(HINSTANCE module, LPCWSTR name, HWND parent, DLGPROC procedure,
                                LPARAM param) {
    return g_refuseDialogs ? nullptr : CreateDialogParamW(module, name, parent, procedure, param);
}

int g_refusals = 0;

void* __cdecl Allocate(size_t bytes) {
    if (g_refusals == 0)
        return std::malloc(bytes);
    --g_refusals;
    return nullptr;
}

LRESULT WINAPI NoRoom(HWND page, int control, UINT message, WPARAM wParam, LPARAM lParam) {
    if (control == IDC_PAPER && message == CB_ADDSTRING)
        return CB_ERRSPACE;
    return SendDlgItemMessageW(page, control, message, wParam, lParam);
}

class Together : public SheetTest {
  protected:
    std::unique_ptr<DrivenSheet> Open(DriverHabits habits = {}) {
        auto sheet = std::make_unique<DrivenSheet>(plugIn, habits);
        sheet->Present();
        sheet->AddPages();
        sheet->Show();
        return sheet;
    }

    driverhost::PlugIn plugIn{driverhost::BesideProgram(L"KZPWriterUI.dll")};
    ImportPatch printerData{plugIn.Module(), "SetPrinterDataW", AddressOf(&NotePrinterData)};
    ImportPatch forms{plugIn.Module(), "GetFormW", AddressOf(&NoForm)};
};

// What a user chooses in a sheet, and what its commit stores where.
struct Choice {
    const wchar_t* left;
    float millimeters;
    int orientation, output, fonts, location;
    LONG landscape, fontItem, locationItem;
    DWORD type;
};
constexpr Choice kFirst = {
    L"0.5", 12.7f, IDC_LANDSCAPE, IDC_OUTPUT_KZP, IDC_FONTS_ALL, IDC_USER_LOCATION, 1, 0, 1, 1};
constexpr Choice kSecond = {
    L"1", 25.4f, IDC_PORTRAIT, IDC_OUTPUT_KZPX, IDC_FONTS_NONE, IDC_DOCUMENTS_LOCATION, 0, 1, 0, 2};

void Make(const DrivenSheet& sheet, const Choice& choice) {
    sheet.Type(IDC_LEFT, choice.left);
    sheet.Click(sheet.pages[0], choice.orientation);
    sheet.Click(sheet.pages[0], choice.output);
    sheet.Click(sheet.Fonts(), choice.fonts);
    sheet.Click(sheet.pages[1], choice.location);
}

void ExpectCommitted(DrivenSheet& sheet, const Choice& choice) {
    g_stored.clear();
    EXPECT_EQ(CPSUICB_ACTION_OPTIF_CHANGED, sheet.Tell(CPSUICB_REASON_APPLYNOW));
    EXPECT_EQ((Floats{choice.millimeters, 0, 0, 0}), sheet.Margins());
    ASSERT_EQ(2u, g_stored.size());
    EXPECT_EQ(sheet.blocks.param.hPrinter, g_stored[0].printer);
    EXPECT_EQ(sheet.blocks.param.hPrinter, g_stored[1].printer);
    EXPECT_EQ(sheet.Margins(), g_stored[1].contents);
    EXPECT_EQ(choice.landscape, sheet.blocks.items[1].Sel);
    EXPECT_EQ(choice.fontItem, sheet.blocks.items[9].Sel);
    EXPECT_EQ(choice.locationItem, sheet.blocks.ownItem.Sel);
    for (const auto& call : sheet.helper.Announcements())
        EXPECT_TRUE(call.rightSheet) << "told to the driver whose sheet it is";
    EXPECT_FALSE(sheet.helper.Announcements().empty());
}

TEST_F(Together, TwoSheetsOfOneThreadCommitTheirOwnInAnyOrder) {
    const DriverHabits habits[] = {{},
                                   {.objectForEachCall = true},
                                   {.namesInitParam = false},
                                   {.otherBlockAtFirst = true},
                                   {.objectForEachCall = true, .otherBlockAtFirst = true},
                                   {.destroysBeforeWindows = true}};
    for (size_t habit = 0; habit < std::size(habits); ++habit) {
        for (const bool innerFirst : {true, false}) {
            SCOPED_TRACE(testing::Message() << "driver " << habit << ", inner first " << innerFirst);
            auto outer = Open(habits[habit]);
            Make(*outer, kFirst);
            auto inner = Open(habits[habit]);
            EXPECT_NE(nullptr, outer->Fonts());
            EXPECT_NE(nullptr, inner->Fonts());
            Make(*inner, kSecond);
            DrivenSheet& first = innerFirst ? *inner : *outer;
            DrivenSheet& second = innerFirst ? *outer : *inner;
            ExpectCommitted(first, innerFirst ? kSecond : kFirst);
            EXPECT_EQ(innerFirst ? 2u : 1u, Setting(L"OutputType")->Dword());
            first.Close();
            second.Click(second.pages[0], IDC_PORTRAIT);
            second.Click(second.pages[0], innerFirst ? IDC_LANDSCAPE : IDC_PORTRAIT);
            ExpectCommitted(second, innerFirst ? kFirst : kSecond);
            EXPECT_EQ(innerFirst ? 1u : 2u, Setting(L"OutputType")->Dword());
        }
    }
}

TEST_F(Together, SheetsOfSeveralThreadsCommitTheirOwn) {
    constexpr int kRounds = 15;
    const ImportPatch unnoted(
        plugIn.Module(), "SetPrinterDataW",
        AddressOf(static_cast<DWORD(WINAPI*)(HANDLE, LPWSTR, DWORD, LPBYTE, DWORD)>(
            [](HANDLE, LPWSTR, DWORD, LPBYTE, DWORD) -> DWORD { return ERROR_SUCCESS; })));
    // When two threads ask for a font's text cache first, Wine frees one that is still in its list; while an
    // edit of this sheet holds the cache, nobody asks first.
    const auto holder = Open();
    SendDlgItemMessageW(holder->pages[0], IDC_LEFT, EM_POSFROMCHAR, 0, 0);
    std::vector<std::unique_ptr<DrivenSheet>> sheets;
    for (int sheet = 0; sheet < 2 * kRounds; ++sheet)
        sheets.push_back(std::make_unique<DrivenSheet>(plugIn, DriverHabits{}));
    std::vector<Floats> committed(sheets.size());
    const auto use = [&](size_t begin, const Choice& choice) {
        for (size_t index = begin; index < sheets.size(); index += 2) {
            DrivenSheet& sheet = *sheets[index];
            sheet.Present();
            sheet.AddPages();
            sheet.Show();
            Make(sheet, choice);
            sheet.Tell(CPSUICB_REASON_APPLYNOW);
            committed[index] = sheet.Margins();
            sheet.Close();
        }
    };
    std::thread other([&] { use(1, kSecond); });
    use(0, kFirst);
    other.join();
    for (size_t index = 0; index < sheets.size(); ++index)
        EXPECT_EQ((Floats{(index % 2 == 0 ? kFirst : kSecond).millimeters, 0, 0, 0}), committed[index])
            << index;
}

// "Printer properties" beside "Printing preferences", and blocks that are presented and never shown: freed
// before and after the sheet opens, and while the user is in it.
TEST_F(Together, BlocksThatNeverBecomeASheetAreLeftAlone) {
    const auto presentAndFree = [&](DWORD mode) { DrivenSheet(plugIn, {}).Present(mode); };
    constexpr DWORD kRefusedMode = 3;
    for (const DWORD mode : {DWORD{OEMCUIP_PRNPROP}, DWORD{OEMCUIP_DOCPROP}, kRefusedMode}) {
        SCOPED_TRACE(mode);
        presentAndFree(mode);
        auto sheet = Open();
        presentAndFree(mode);
        Make(*sheet, kFirst);
        DrivenSheet properties(plugIn, {});
        properties.Present(mode);
        sheet->Click(sheet->pages[0], IDC_PORTRAIT);
        properties.Close();
        sheet->Click(sheet->pages[0], IDC_LANDSCAPE);
        ExpectCommitted(*sheet, kFirst);
    }
    const auto presentMany = [&] {
        for (int time = 0; time < 100; ++time)
            presentAndFree(time % 2 ? OEMCUIP_PRNPROP : OEMCUIP_DOCPROP);
        return CountHeapBlocks();
    };
    const size_t before = presentMany();
    EXPECT_NEAR(static_cast<double>(before), static_cast<double>(presentMany()), 20)
        << "nothing of them is kept";
}

TEST_F(Together, EverySheetGetsItsFontsDialogAlsoAfterOneThatCouldNot) {
    const ImportPatch creation(plugIn.Module(), "CreateDialogParamW", AddressOf(&CreateUnlessRefused));
    g_refuseDialogs = true;
    auto failing = Open();
    g_refuseDialogs = false;
    EXPECT_EQ(nullptr, failing->Fonts());
    EXPECT_NE(nullptr, Open()->Fonts()) << "while the other one is open";
    failing.reset();
    EXPECT_NE(nullptr, Open()->Fonts());
}

// A page that could not be filled, one that was never shown, and a driver without a unit: what is stored goes
// through the commit as it is.
TEST_F(Together, WhatNoPageHasShownIsStoredAgainUnchanged) {
    const Floats margins = {5, 6, 7, 8};
    for (const bool shown : {false, true}) {
        SCOPED_TRACE(shown);
        const ImportPatch list(plugIn.Module(), "SendDlgItemMessageW", AddressOf(&NoRoom));
        WriteText(HKEY_CURRENT_USER, kSettingsKey, L"LaunchKZPView", L"NO");
        WriteText(HKEY_CURRENT_USER, kSettingsKey, L"PROMPTFILENAME", L"No");
        WriteText(HKEY_CURRENT_USER, kSettingsKey, L"PathDirs", L"C:\\A;");
        WriteText(HKEY_CURRENT_USER, kSettingsKey, L"DefaultDir", L"C:\\A");
        WriteDword(HKEY_CURRENT_USER, kSettingsKey, L"OutputType", 1);
        DrivenSheet sheet(plugIn, {});
        sheet.SetMargins(margins);
        sheet.Present();
        sheet.AddPages();
        if (shown)
            sheet.Show();
        EXPECT_EQ(CPSUICB_ACTION_OPTIF_CHANGED, sheet.Tell(CPSUICB_REASON_APPLYNOW));
        EXPECT_EQ(margins, sheet.Margins());
        EXPECT_EQ(L"NO", Setting(L"LaunchKZPView")->Text());
        EXPECT_EQ(1u, Setting(L"OutputType")->Dword());
        if (!shown) {
            EXPECT_EQ(L"No", Setting(L"PROMPTFILENAME")->Text());
            EXPECT_EQ(L"C:\\A;", Setting(L"PathDirs")->Text());
            EXPECT_EQ(L"C:\\A", Setting(L"DefaultDir")->Text());
        }
    }
}

TEST_F(Together, OnlyACommitThatGoesWrongKeepsTheSheetOpen) {
    const ImportPatch allocation(plugIn.Module(), "malloc", AddressOf(&Allocate));
    auto sheet = Open();
    DrivenSheet unknown(plugIn, {});
    unknown.Present();
    unknown.driverPage = sheet->driverPage;
    g_refusals = 1;
    EXPECT_EQ(CPSUICB_ACTION_NO_APPLY_EXIT, sheet->Tell(CPSUICB_REASON_APPLYNOW));
    g_refusals = 1;
    EXPECT_EQ(CPSUICB_ACTION_NONE, unknown.Tell(CPSUICB_REASON_SETACTIVE));
    EXPECT_EQ(0, g_refusals);
}

}  // namespace
}  // namespace kzp::test

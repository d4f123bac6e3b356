// More than one sheet in a process: on one thread, one within the other's messages, and on several; beside
// the printer's properties; after sheets that never came or failed. None touches what another driver call has
// freed, and each commits its own.
#include <cstdlib>
#include <cstring>
#include <memory>
#include <thread>

#include "tests/sheet/DrivenSheet.h"
#include "tests/sheet/WriteTrace.h"
#include "tests/support/Counters.h"
#include "tests/support/SheetTest.h"

namespace kzp::test {
namespace {

using Floats = std::vector<float>;

LRESULT WINAPI NoRoom(HWND page, int control, UINT message, WPARAM wParam, LPARAM lParam) {
    if (control == IDC_PAPER && message == CB_ADDSTRING)
        return CB_ERRSPACE;
    return SendDlgItemMessageW(page, control, message, wParam, lParam);
}

HWND WINAPI NoDialog(HINSTANCE, LPCWSTR, HWND, DLGPROC, LPARAM) {
    return nullptr;
}

int g_refusals = 0;

void* __cdecl Allocate(size_t bytes) {
    return g_refusals-- > 0 ? nullptr : std::malloc(bytes);
}

// What a user chooses in a sheet, and what its commit stores where.
struct Choice {
    const wchar_t* left;
    float millimeters;
    int orientation, output, fonts, location;
    LONG landscape, fontItem, locationItem;
    DWORD type;
};
constexpr Choice kChoices[] = {
    {L"0.5", 12.7f, IDC_LANDSCAPE, IDC_OUTPUT_KZP, IDC_FONTS_ALL, IDC_USER_LOCATION, 1, 0, 1, 1},
    {L"1", 25.4f, IDC_PORTRAIT, IDC_OUTPUT_KZPX, IDC_FONTS_NONE, IDC_DOCUMENTS_LOCATION, 0, 1, 0, 2}};

void Make(const DrivenSheet& sheet, const Choice& choice) {
    SetDlgItemTextW(sheet.pages[0], IDC_LEFT, choice.left);
    sheet.Click(sheet.pages[0], choice.orientation);
    sheet.Click(sheet.pages[0], choice.output);
    sheet.Click(sheet.Fonts(), choice.fonts);
    sheet.Click(sheet.pages[1], choice.location);
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

    void ExpectCommitted(DrivenSheet& sheet, const Choice& choice) {
        const WriteTrace trace(plugIn.Module());
        driverhost::DocumentSession& session = *sheet.session;
        EXPECT_EQ(CPSUICB_ACTION_OPTIF_CHANGED, sheet.Tell(CPSUICB_REASON_APPLYNOW));
        EXPECT_EQ((Floats{choice.millimeters, 0, 0, 0}), RecordMargins(session));
        EXPECT_EQ(session.Printer(), WriteTrace::lastPrinter);
        EXPECT_EQ(driverhost::Format(L"printer: KZP Margin=%.2f 0.00 0.00 0.00", choice.millimeters),
                  WriteTrace::Take().back());
        EXPECT_EQ(choice.type, Setting(L"OutputType")->Dword());
        EXPECT_EQ(choice.landscape, session.Tree().Items()[1].Sel);
        EXPECT_EQ(choice.fontItem, session.Tree().Items()[9].Sel);
        EXPECT_EQ(choice.locationItem, session.PlugInTree().Items()[0].Sel);
        for (const auto& call : session.Helper().Announcements())
            EXPECT_TRUE(call.rightSheet) << "told to the driver whose sheet it is";
        EXPECT_FALSE(session.Helper().Announcements().empty());
    }

    driverhost::PlugIn plugIn{driverhost::BesideProgram(L"KZPWriterUI.dll")};
};

TEST_F(Together, TwoSheetsOfOneThreadCommitTheirOwnInAnyOrder) {
    const DriverHabits habits[] = {{},
                                   {.objectForEachCall = true},
                                   {.namesInitParam = false},
                                   {.otherBlockAtFirst = true},
                                   {.objectForEachCall = true, .otherBlockAtFirst = true},
                                   {.destroysBeforeWindows = true}};
    for (const DriverHabits& habit : habits) {
        for (const int first : {0, 1}) {
            SCOPED_TRACE(testing::Message() << "driver " << &habit - habits << ", first " << first);
            std::unique_ptr<DrivenSheet> sheets[2];
            for (const int sheet : {0, 1}) {
                sheets[sheet] = Open(habit);
                EXPECT_NE(nullptr, sheets[0]->Fonts());
                EXPECT_NE(nullptr, sheets[sheet]->Fonts());
                Make(*sheets[sheet], kChoices[sheet]);
            }
            ExpectCommitted(*sheets[first], kChoices[first]);
            sheets[first]->Close();
            const int second = 1 - first;
            sheets[second]->Click(sheets[second]->pages[0], kChoices[first].orientation);
            sheets[second]->Click(sheets[second]->pages[0], kChoices[second].orientation);
            ExpectCommitted(*sheets[second], kChoices[second]);
        }
    }
}

TEST_F(Together, SheetsOfSeveralThreadsCommitTheirOwn) {
    constexpr int kRounds = 10;
    // When two threads ask for a font's text cache first, Wine frees one that is still in its list; while an
    // edit of this sheet holds the cache, nobody asks first.
    const auto holder = Open();
    SendDlgItemMessageW(holder->pages[0], IDC_LEFT, EM_POSFROMCHAR, 0, 0);
    std::vector<std::unique_ptr<DrivenSheet>> sheets;
    for (int sheet = 0; sheet < 2 * kRounds; ++sheet)
        sheets.push_back(std::make_unique<DrivenSheet>(plugIn));
    std::vector<float> committed(sheets.size());
    const auto use = [&](size_t begin) {
        for (size_t index = begin; index < sheets.size(); index += 2) {
            DrivenSheet& sheet = *sheets[index];
            sheet.Present();
            sheet.AddPages();
            sheet.Show();
            Make(sheet, kChoices[begin]);
            sheet.Tell(CPSUICB_REASON_APPLYNOW);
            committed[index] = RecordMargins(*sheet.session)[0];
            sheet.Close();
        }
    };
    std::thread other(use, 1);
    use(0);
    other.join();
    for (size_t index = 0; index < sheets.size(); ++index)
        EXPECT_EQ(kChoices[index % 2].millimeters, committed[index]) << index;
}

// "Printer properties" beside "Printing preferences", and blocks that are presented and never shown: freed
// before and after the sheet opens, and while the user is in it.
TEST_F(Together, BlocksThatNeverBecomeASheetAreLeftAlone) {
    const auto presentAndFree = [&](DWORD mode) { DrivenSheet(plugIn).Present(mode); };
    constexpr DWORD kRefusedMode = 3;
    for (const DWORD mode : {DWORD{OEMCUIP_PRNPROP}, DWORD{OEMCUIP_DOCPROP}, kRefusedMode}) {
        SCOPED_TRACE(mode);
        presentAndFree(mode);
        auto sheet = Open();
        presentAndFree(mode);
        Make(*sheet, kChoices[0]);
        DrivenSheet properties(plugIn);
        properties.Present(mode);
        sheet->Click(sheet->pages[0], IDC_PORTRAIT);
        properties.Close();
        sheet->Click(sheet->pages[0], IDC_LANDSCAPE);
        ExpectCommitted(*sheet, kChoices[0]);
    }
    const auto object = plugIn.CreateObject();
    const auto presentMany = [&] {
        for (int time = 0; time < 100; ++time)
            object->CommonUIProp(time % 2 ? OEMCUIP_PRNPROP : OEMCUIP_DOCPROP,
                                 driverhost::SessionVector<OEMCUIPPARAM>(1).data());
        return static_cast<double>(CountHeapBlocks());
    };
    const double before = presentMany();
    EXPECT_NEAR(before, presentMany(), 20) << "nothing of them is kept";
}

TEST_F(Together, EverySheetGetsItsFontsDialogAlsoAfterOneThatCouldNot) {
    std::optional<ImportPatch> refusal(std::in_place, plugIn.Module(), "CreateDialogParamW",
                                       AddressOf(&NoDialog));
    auto failing = Open();
    refusal.reset();
    EXPECT_EQ(nullptr, failing->Fonts());
    EXPECT_NE(nullptr, Open()->Fonts()) << "while the other one is open";
    failing.reset();
    EXPECT_NE(nullptr, Open()->Fonts());
}

// A page that could not be filled, and one that was never shown: what is stored goes through the commit as it
// is.
TEST_F(Together, WhatNoPageHasShownIsStoredAgainUnchanged) {
    const Floats margins = {5, 6, 7, 8};
    const std::pair<const wchar_t*, const wchar_t*> texts[] = {{L"LaunchKZPView", L"NO"},
                                                               {L"PROMPTFILENAME", L"No"},
                                                               {L"PathDirs", L"C:\\A;"},
                                                               {L"DefaultDir", L"C:\\A"}};
    for (const bool shown : {true, false}) {
        SCOPED_TRACE(shown);
        const ImportPatch list(plugIn.Module(), "SendDlgItemMessageW", AddressOf(&NoRoom));
        for (const auto& [name, text] : texts)
            WriteText(HKEY_CURRENT_USER, kSettingsKey, name, text);
        WriteDword(HKEY_CURRENT_USER, kSettingsKey, L"OutputType", 1);
        DrivenSheet sheet(plugIn);
        std::memcpy(sheet.session->DevMode().PlugInPart() + offsetof(KZPPrivateDevMode, fMargins),
                    margins.data(), sizeof(float[4]));
        sheet.Present();
        sheet.AddPages();
        if (shown)
            sheet.Show();
        EXPECT_EQ(CPSUICB_ACTION_OPTIF_CHANGED, sheet.Tell(CPSUICB_REASON_APPLYNOW));
        EXPECT_EQ(margins, RecordMargins(*sheet.session));
        EXPECT_EQ(L"NO", Setting(L"LaunchKZPView")->Text());
        EXPECT_EQ(1u, Setting(L"OutputType")->Dword());
        for (const auto& [name, text] : texts)
            EXPECT_TRUE(shown || Setting(name)->Text() == text);
    }
}

TEST_F(Together, OnlyACommitThatGoesWrongKeepsTheSheetOpen) {
    auto sheet = Open();
    DrivenSheet unknown(plugIn);
    unknown.Present();
    unknown.driverPage = sheet->driverPage;
    const ImportPatch allocation(plugIn.Module(), "malloc", AddressOf(&Allocate));
    g_refusals = 1;
    EXPECT_EQ(CPSUICB_ACTION_NO_APPLY_EXIT, sheet->Tell(CPSUICB_REASON_APPLYNOW));
    g_refusals = 1;
    EXPECT_EQ(CPSUICB_ACTION_NONE, unknown.Tell(CPSUICB_REASON_SETACTIVE));
    EXPECT_LE(g_refusals, 0);
}

}  // namespace
}  // namespace kzp::test

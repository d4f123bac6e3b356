// CommonUIProp: which of the driver's items are hidden, which one gets help, and what is registered.
#include "resources/resource.h"
#include "settings/PropertySheetHost.h"
#include "settings/SheetState.h"
#include "settings/SpoolerForms.h"
#include "tests/support/Counters.h"
#include "tests/support/Files.h"
#include "tests/support/SheetTest.h"

namespace kzp::test {
namespace {

namespace spooler = standins::spooler;

class TreeTest : public SheetTest {
  protected:
    HRESULT Present(std::vector<OPTITEM>& items, DWORD mode = OEMCUIP_DOCPROP) {
        param.pDrvOptItems = items.data();
        param.cDrvOptItems = static_cast<DWORD>(items.size());
        return session.Object()->CommonUIProp(mode, &param);
    }

    driverhost::PlugIn plugIn{driverhost::BesideProgram(L"KZPWriterUI.dll")};
    driverhost::DocumentSession session{plugIn, {}};
    OEMCUIPPARAM& param = session.UIParam();
    const std::wstring helpItem = plugIn.ResourceText(IDS_HELP_ITEM_NAME);
};

TEST_F(TreeTest, HidesWhatItsPagesReplaceInDocumentModeAlone) {
    constexpr int kNoType = -1;
    constexpr DWORD kHidden = 0x82;
    const struct {
        BYTE dmPub;
        int type;
        DWORD added;
    } cases[] = {
        {DMPUB_ORIENTATION, TVOT_2STATES, kHidden},
        {DMPUB_COLOR, kNoType, kHidden},
        {DMPUB_COPIES_COLLATE, TVOT_UDARROW, kHidden},
        {DMPUB_NUP, TVOT_LISTBOX, kHidden},
        {DMPUB_PAGEORDER, TVOT_LISTBOX, kHidden},
        {DMPUB_NONE, TVOT_2STATES, kHidden},
        {DMPUB_NONE, TVOT_3STATES, 0},
        {DMPUB_NONE, TVOT_LISTBOX, 0},
        {DMPUB_NONE, kNoType, 0},
        {DMPUB_SCALE, TVOT_2STATES, 0},
        {DMPUB_DEFSOURCE, TVOT_LISTBOX, 0},
        {DMPUB_DUPLEX, TVOT_2STATES, 0},
        {DMPUB_USER, TVOT_2STATES, 0},
    };
    OPTTYPE types[std::size(cases)] = {};
    std::vector<OPTITEM> items(std::size(cases));
    for (size_t index = 0; index < items.size(); ++index) {
        types[index].Type = static_cast<BYTE>(cases[index].type);
        items[index].Level = 1;
        items[index].DMPubID = cases[index].dmPub;
        items[index].pOptType = cases[index].type == kNoType ? nullptr : &types[index];
        items[index].Flags = OPTIF_CHANGED;
    }
    for (const DWORD mode : {OEMCUIP_PRNPROP, OEMCUIP_DOCPROP}) {
        SCOPED_TRACE(mode);
        const bool document = mode == OEMCUIP_DOCPROP;
        spooler::RemoveForm(kCustomFormName);
        EXPECT_EQ(S_OK, Present(items, mode));
        EXPECT_TRUE(ReadFormSize(param.hPrinter, kCustomFormName)) << "its own form is there";
        for (size_t index = 0; index < items.size(); ++index)
            EXPECT_EQ(OPTIF_CHANGED | (document ? cases[index].added : 0), items[index].Flags) << index;
    }
}

TEST_F(TreeTest, GivesHelpToTheOneItemWhereThereAreHeapAndTexts) {
    const std::wstring longer = helpItem + L"s";
    std::wstring otherCase = helpItem;
    CharUpperW(otherCase.data());
    ASSERT_NE(helpItem, otherCase);
    const std::pair<PCWSTR, BYTE> names[] = {{helpItem.c_str(), BYTE{2}},
                                             {helpItem.c_str(), BYTE{1}},
                                             {helpItem.c_str(), BYTE{3}},
                                             {longer.c_str(), BYTE{2}},
                                             {otherCase.c_str(), BYTE{2}},
                                             {nullptr, BYTE{2}},
                                             {MAKEINTRESOURCEW(IDS_HELP_ITEM_NAME), BYTE{2}}};
    std::vector<OPTITEM> items;
    for (const auto& [name, level] : names) {
        items.emplace_back().pName = const_cast<PWSTR>(name);
        items.back().Level = level;
    }
    items[0].DMPubID = DMPUB_NUP;
    const HANDLE heap = std::exchange(param.hOEMHeap, nullptr);
    const auto expectHelped = [&](size_t helped) {
        for (size_t index = 0; index < items.size(); ++index) {
            const DWORD hidden = index == 0 ? 0x82 : 0;
            EXPECT_EQ(hidden | (index < helped ? OPTIF_HAS_POIEXT : 0), items[index].Flags) << index;
            EXPECT_EQ(index < helped, items[index].pOIExt != nullptr) << index;
        }
        EXPECT_EQ(2 * helped, CountHeapBlocks(heap))
            << "extension and path; the name that was compared is freed";
    };
    EXPECT_EQ(S_OK, Present(items));
    expectHelped(0);
    param.hOEMHeap = heap;
    {
        const TemporaryFolder alone;
        const driverhost::PlugIn lonely(alone.Take(L"KZPWriterUI.dll"));
        EXPECT_EQ(S_OK, lonely.CreateObject()->CommonUIProp(OEMCUIP_DOCPROP, &param));
        expectHelped(0);
    }
    EXPECT_EQ(S_OK, Present(items));
    expectHelped(1);
    EXPECT_EQ(15001u, items[0].HelpIndex);
    EXPECT_EQ(sizeof(OIEXT), items[0].pOIExt->cbSize);
    EXPECT_EQ(sizeof(OIEXT), HeapSize(heap, 0, items[0].pOIExt));
    const std::wstring file = items[0].pOIExt->pHelpFile;
    EXPECT_NE(std::wstring::npos, file.find(L"\\spool\\drivers\\x64\\3\\")) << "the driver's directory";
    EXPECT_EQ(plugIn.ResourceText(IDS_ITEM_HELP_FILE), file.substr(file.rfind(L'\\') + 1));
}

TEST_F(TreeTest, LivesWithEmptyArrays) {
    OPTITEM own[1] = {};
    const struct {
        POPTITEM items;
        DWORD count, answered;
    } plugInArrays[] = {{nullptr, 5, 0}, {nullptr, 0, 0}, {own, 0, 0}, {own, 1, 1}};
    for (const DWORD mode : {OEMCUIP_DOCPROP, OEMCUIP_PRNPROP}) {
        for (const auto& [items, count, answered] : plugInArrays) {
            param.pOEMOptItems = items;
            param.cOEMOptItems = count;
            param.pDrvOptItems = nullptr;
            param.cDrvOptItems = 7;  // of an array that is missing
            param.OEMCUIPCallback = nullptr;
            EXPECT_EQ(S_OK, session.Object()->CommonUIProp(mode, &param));
            EXPECT_EQ(answered, param.cOEMOptItems);
            EXPECT_EQ(mode == OEMCUIP_DOCPROP, param.OEMCUIPCallback != nullptr);
        }
    }
}

// Seen from inside, for the parameter block is the driver's and may not be used after the call.
TEST_F(TreeTest, ARefusedModeTakesTheStateAndNothingElse) {
    OPTITEM item = {};
    item.DMPubID = DMPUB_NUP;
    param.pDrvOptItems = &item;
    param.cDrvOptItems = 1;
    param.cOEMOptItems = 5;
    spooler::StartLog();
    const auto refuses = [](const std::function<HRESULT()>& call) {
        SetLastError(0);
        return call() == E_FAIL && GetLastError() == ERROR_INVALID_PARAMETER;
    };
    for (const DWORD mode : {DWORD{0}, DWORD{3}, ~DWORD{0}}) {
        EXPECT_TRUE(refuses([&] { return CommonUIProp(mode, &param, nullptr); }));
        const SheetUse sheet = SheetOfBlock(&param);
        EXPECT_EQ(&param, sheet.Get()->CurrentUIParam);
        EXPECT_EQ(driverhost::kDefaultPrinter, sheet.Get()->CurrentPrinterName);
        EXPECT_TRUE(refuses([&] { return session.Object()->CommonUIProp(mode, &param); }));
        EXPECT_EQ(0u, item.Flags);
        EXPECT_EQ(5u, param.cOEMOptItems);
        EXPECT_EQ(nullptr, param.OEMCUIPCallback);
    }
    EXPECT_TRUE(spooler::ReadLog().empty()) << "no form is added";
    EXPECT_TRUE(refuses([&] { return session.Object()->CommonUIProp(OEMCUIP_DOCPROP, nullptr); }));
}

}  // namespace
}  // namespace kzp::test

// CommonUIProp: which of the driver's items are hidden, which one gets help, and what is registered.
#include <vector>

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
    TreeTest() {
        EXPECT_TRUE(OpenPrinterW(printerName.data(), &param.hPrinter, nullptr));
        param.cbSize = sizeof param;
        param.pPrinterName = printerName.data();
        param.hOEMHeap = heap;
    }
    ~TreeTest() override {
        ClosePrinter(param.hPrinter);
        HeapDestroy(heap);
    }

    HRESULT Present(std::vector<OPTITEM>& items, DWORD mode = OEMCUIP_DOCPROP) {
        param.pDrvOptItems = items.data();
        param.cDrvOptItems = static_cast<DWORD>(items.size());
        return object->CommonUIProp(mode, &param);
    }
    static OPTITEM Named(PCWSTR name, BYTE level = 2) {
        OPTITEM item = {};
        item.Level = level;
        item.pName = const_cast<PWSTR>(name);
        return item;
    }

    driverhost::PlugIn plugIn{driverhost::BesideProgram(L"KZPWriterUI.dll")};
    driverhost::ComRef<IPrintOemUI2> object = plugIn.CreateObject();
    std::wstring helpItem = plugIn.ResourceText(IDS_HELP_ITEM_NAME);
    std::wstring printerName = driverhost::kDefaultPrinter;
    HANDLE heap = HeapCreate(0, 0, 0);
    OEMCUIPPARAM param = {};
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
    std::vector<OPTITEM> items;
    for (size_t index = 0; index < std::size(cases); ++index) {
        types[index].Type = static_cast<BYTE>(cases[index].type);
        OPTITEM item = Named(nullptr, 1);
        item.DMPubID = cases[index].dmPub;
        item.pOptType = cases[index].type == kNoType ? nullptr : &types[index];
        item.Flags = OPTIF_CHANGED;
        items.push_back(item);
    }
    for (const DWORD mode : {OEMCUIP_PRNPROP, OEMCUIP_DOCPROP}) {
        spooler::RemoveForm(kCustomFormName);
        EXPECT_EQ(S_OK, Present(items, mode));
        EXPECT_TRUE(ReadFormSize(param.hPrinter, kCustomFormName)) << "its own form is there, mode " << mode;
        for (size_t index = 0; index < items.size(); ++index)
            EXPECT_EQ(OPTIF_CHANGED | (mode == OEMCUIP_DOCPROP ? cases[index].added : 0), items[index].Flags)
                << "mode " << mode << ", DMPUB " << int{cases[index].dmPub} << ", type " << cases[index].type;
        EXPECT_EQ(mode == OEMCUIP_DOCPROP, param.OEMCUIPCallback != nullptr);
    }
}

TEST_F(TreeTest, GivesHelpToTheOneItemOutOfTheDriversHeap) {
    const std::wstring longer = helpItem + L"s";
    std::wstring otherCase = helpItem;
    CharUpperW(otherCase.data());
    ASSERT_NE(helpItem, otherCase);
    std::vector<OPTITEM> items = {
        Named(helpItem.c_str()), Named(helpItem.c_str(), 1), Named(helpItem.c_str(), 3),
        Named(longer.c_str()),   Named(otherCase.c_str()),   Named(MAKEINTRESOURCEW(IDS_HELP_ITEM_NAME)),
        Named(nullptr)};
    EXPECT_EQ(S_OK, Present(items));
    EXPECT_EQ(DWORD{OPTIF_HAS_POIEXT}, items[0].Flags);
    EXPECT_EQ(15001u, items[0].HelpIndex);
    ASSERT_NE(nullptr, items[0].pOIExt);
    EXPECT_EQ(sizeof(OIEXT), items[0].pOIExt->cbSize);
    EXPECT_EQ(sizeof(OIEXT), HeapSize(heap, 0, items[0].pOIExt));
    const std::wstring file = items[0].pOIExt->pHelpFile;
    EXPECT_EQ((file.size() + 1) * sizeof(wchar_t), HeapSize(heap, 0, items[0].pOIExt->pHelpFile));
    EXPECT_NE(std::wstring::npos, file.find(L"\\spool\\drivers\\x64\\3\\")) << "the driver's directory";
    EXPECT_EQ(plugIn.ResourceText(IDS_ITEM_HELP_FILE), file.substr(file.rfind(L'\\') + 1));
    for (size_t other = 1; other < items.size(); ++other) {
        EXPECT_EQ(0u, items[other].Flags) << other;
        EXPECT_EQ(nullptr, items[other].pOIExt) << other;
    }
    EXPECT_TRUE(HeapValidate(heap, 0, nullptr));
    EXPECT_EQ(2u, CountHeapBlocks(heap)) << "extension and path; the name that was compared is given back";
}

TEST_F(TreeTest, WithoutAHeapOrTextsNoItemGetsHelp) {
    std::vector<OPTITEM> items = {Named(helpItem.c_str())};
    items[0].DMPubID = DMPUB_NUP;
    param.hOEMHeap = nullptr;
    EXPECT_EQ(S_OK, Present(items));
    EXPECT_EQ(0x82u, items[0].Flags) << "hiding needs no heap";

    const TemporaryFolder alone;
    const driverhost::PlugIn lonely(alone.Take(L"KZPWriterUI.dll"));
    object = lonely.CreateObject();
    param.hOEMHeap = heap;
    EXPECT_EQ(S_OK, Present(items));
    EXPECT_EQ(0x82u, items[0].Flags);
    EXPECT_EQ(0u, CountHeapBlocks(heap));
    object = {};
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
            EXPECT_EQ(S_OK, object->CommonUIProp(mode, &param));
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
    for (const DWORD mode : {DWORD{0}, DWORD{3}, ~DWORD{0}}) {
        SetLastError(0);
        EXPECT_EQ(E_FAIL, CommonUIProp(mode, &param, nullptr));
        EXPECT_EQ(DWORD{ERROR_INVALID_PARAMETER}, GetLastError());
        const SheetUse sheet = SheetOfBlock(&param);
        EXPECT_EQ(&param, sheet.Get()->CurrentUIParam);
        EXPECT_EQ(printerName, sheet.Get()->CurrentPrinterName);
        EXPECT_EQ(0u, item.Flags);
        EXPECT_EQ(5u, param.cOEMOptItems);
        EXPECT_EQ(nullptr, param.OEMCUIPCallback);
        SetLastError(0);
        EXPECT_EQ(E_FAIL, object->CommonUIProp(mode, &param)) << "and so does the delivered one";
        EXPECT_EQ(DWORD{ERROR_INVALID_PARAMETER}, GetLastError());
    }
    EXPECT_TRUE(spooler::ReadLog().empty()) << "no form is added";
    SetLastError(0);
    EXPECT_EQ(E_FAIL, object->CommonUIProp(OEMCUIP_DOCPROP, nullptr));
    EXPECT_EQ(DWORD{ERROR_INVALID_PARAMETER}, GetLastError());
}

}  // namespace
}  // namespace kzp::test

// What the driver is answered: CommonUIProp, which hides items of its tree, gives one of them help and
// registers the callback, and DocumentPropertySheets, for each of its reasons.
#include <algorithm>

#include "resources/resource.h"
#include "settings/SpoolerForms.h"
#include "tests/support/Counters.h"
#include "tests/support/SheetTest.h"

namespace kzp::test {
namespace {

namespace spooler = standins::spooler;

LONG_PTR CALLBACK AddPage(HANDLE, UINT function, LPARAM, LPARAM) {
    return function == CPSFUNC_SET_HSTARTPAGE ? 42 : 101;
}

class DriverCall : public SheetTest {
  protected:
    HRESULT TellPages(WORD reason, const void* parameter = nullptr) {
        info.Reason = reason;
        info.Result = kUntouched;
        return session.Object()->DocumentPropertySheets(&info, reinterpret_cast<LPARAM>(parameter));
    }

    static constexpr DWORD kUntouched = 0xABCD;
    driverhost::PlugIn plugIn;
    driverhost::DocumentSession session{plugIn, {}};
    OEMCUIPPARAM& param = session.UIParam();
    PROPSHEETUI_INFO info = {sizeof info, PROPSHEETUI_INFO_VERSION, 0, 0, nullptr, AddPage, 0, 0, 0};
};

TEST_F(DriverCall, HidesWhatThePagesReplaceInDocumentModeAlone) {
    constexpr DWORD kRefusedMode = 3;
    for (const DWORD mode : {DWORD{OEMCUIP_DOCPROP}, DWORD{OEMCUIP_PRNPROP}, kRefusedMode}) {
        SCOPED_TRACE(mode);
        spooler::RemoveForm(kCustomFormName);
        driverhost::DocumentSession own(plugIn, {.mode = mode});
        SetLastError(0);
        EXPECT_EQ(mode == kRefusedMode ? E_FAIL : S_OK, own.PresentItems());
        EXPECT_EQ(mode == kRefusedMode, GetLastError() == ERROR_INVALID_PARAMETER);
        EXPECT_EQ(mode != kRefusedMode, ReadFormSize(own.Printer(), kCustomFormName).has_value())
            << "its own form is there";
        EXPECT_EQ(mode == OEMCUIP_DOCPROP, own.UIParam().OEMCUIPCallback != nullptr);
        std::string hidden;
        for (const OPTITEM& item : own.Tree().All()) {
            if (item.Flags == (OPTIF_HIDE | OPTIF_EXT_HIDE))
                hidden += driverhost::KeywordOf(item) + " ";
        }
        EXPECT_EQ(mode == OEMCUIP_DOCPROP ? "Orientation ColorMode TrueColor Copies NUp PageOrder CustomUnit "
                                            "SaveAsDialogPreference "
                                          : "",
                  hidden);
    }
}

TEST_F(DriverCall, GivesHelpToTheOneItemWhereThereIsAHeap) {
    OPTITEM* const items = session.Tree().Items();
    OPTITEM& item = *session.Tree().Find("KZPOutput");
    items[0].pName = item.pName;  // on another level
    items[1].Level = items[2].Level = item.Level;
    items[1].pName = nullptr;
    const auto helped = [this] {
        return std::ranges::count_if(session.Tree().All(), [](auto& any) { return any.pOIExt != nullptr; });
    };
    const HANDLE heap = std::exchange(param.hOEMHeap, nullptr);
    session.PresentItems();
    EXPECT_EQ(0, helped());
    param.hOEMHeap = heap;
    session.PresentItems();
    EXPECT_EQ(1, helped());
    EXPECT_EQ(DWORD{OPTIF_HAS_POIEXT}, item.Flags);
    EXPECT_EQ(15001u, item.HelpIndex);
    ASSERT_NE(nullptr, item.pOIExt);
    EXPECT_EQ(sizeof(OIEXT), item.pOIExt->cbSize);
    EXPECT_TRUE(std::wstring(item.pOIExt->pHelpFile)
                    .ends_with(L"\\spool\\drivers\\x64\\3\\" + plugIn.ResourceText(IDS_ITEM_HELP_FILE)));
    EXPECT_EQ(3u, CountHeapBlocks(heap)) << "extension, and its path each time; what was compared is freed";
}

TEST_F(DriverCall, AnswersEachReasonOfTheSheetAndLivesWithMissingParts) {
    PROPSHEETUI_INFO_HEADER header = {};
    SETRESULT_INFO result = {sizeof result, 0, nullptr, 2};
    const struct {
        WORD version, reason;
        const void* parameter;
        HRESULT answer;
        DWORD result;
    } cases[] = {
        {0x0101, PROPSHEETUI_REASON_INIT, nullptr, E_FAIL, kUntouched},
        {PROPSHEETUI_INFO_VERSION, PROPSHEETUI_REASON_GET_INFO_HEADER, &header, S_OK, 1},
        {PROPSHEETUI_INFO_VERSION, PROPSHEETUI_REASON_SET_RESULT, &result, S_OK, 2},
        {PROPSHEETUI_INFO_VERSION, PROPSHEETUI_REASON_DESTROY, nullptr, S_OK, 1},
        {PROPSHEETUI_INFO_VERSION, PROPSHEETUI_REASON_GET_ICON, nullptr, S_OK, 0},
        {PROPSHEETUI_INFO_VERSION, PROPSHEETUI_REASON_INIT, nullptr, S_OK, 42},
    };
    for (const auto& expected : cases) {
        info.Version = expected.version;
        EXPECT_EQ(expected.answer, TellPages(expected.reason, expected.parameter)) << &expected - cases;
        EXPECT_EQ(expected.result, info.Result) << &expected - cases;
    }
    EXPECT_STREQ(L"KZPWRITER UI Page", header.pTitle);
    EXPECT_EQ(E_FAIL, session.Object()->DocumentPropertySheets(nullptr, 0));
    param.cOEMOptItems = 5;  // of an array that is missing
    EXPECT_EQ(S_OK, session.Object()->CommonUIProp(OEMCUIP_DOCPROP, &param));
    EXPECT_EQ(0u, param.cOEMOptItems);
    EXPECT_EQ(E_FAIL, session.Object()->CommonUIProp(OEMCUIP_DOCPROP, nullptr));
}

TEST_F(DriverCall, ToCommitWhatNoPageHasShownStoresItAgainUnchanged) {
    const std::vector<float> margins = {5, 6, 7, 8};
    const std::pair<const wchar_t*, const wchar_t*> texts[] = {{L"LaunchKZPView", L"NO"},
                                                               {L"PROMPTFILENAME", L"No"},
                                                               {L"PathDirs", L"C:\\A;"},
                                                               {L"DefaultDir", L"C:\\A"}};
    for (const auto& [name, text] : texts)
        WriteText(HKEY_CURRENT_USER, kSettingsKey, name, text);
    WriteDword(HKEY_CURRENT_USER, kSettingsKey, L"OutputType", 1);
    std::memcpy(session.DevMode().PlugInPart() + offsetof(KZPPrivateDevMode, fMargins), margins.data(),
                sizeof(float[4]));
    session.PresentItems();
    TellPages(PROPSHEETUI_REASON_INIT);
    EXPECT_EQ(CPSUICB_ACTION_OPTIF_CHANGED, session.TellCallback(CPSUICB_REASON_APPLYNOW, nullptr));
    EXPECT_EQ(margins, RecordMargins(session));
    EXPECT_EQ(1u, Setting(L"OutputType")->Dword());
    for (const auto& [name, text] : texts)
        EXPECT_EQ(text, Setting(name)->Text());
}

}  // namespace
}  // namespace kzp::test

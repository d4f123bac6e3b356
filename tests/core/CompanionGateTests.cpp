// The gate of DevMode on current systems with a spooled queue: a companion on screen shuts it, one without a
// window does not. Real processes, real windows.
#include <gtest/gtest.h>

#include "core/InteractionApp.h"
#include "core/SignalMapping.h"
#include "tests/support/Files.h"
#include "tests/support/PlugInDll.h"
#include "tests/support/ScratchRegistry.h"
#include "tools/standins/companions/Companions.h"

namespace kzp::test {
namespace {

using namespace kzp::standins;

struct CompanionGate : testing::Test {
    CompanionGate() { WriteDword(HKEY_LOCAL_MACHINE, kQueueKey, L"Attributes", 0x240); }
    ~CompanionGate() override {
        QuitAll();
        DestroyWindow(hidden);
        DestroyWindow(window);
    }

    void Start(const std::wstring& name, const wchar_t* does) {
        ASSERT_TRUE(StartCompanion(PlaceCompanion(folder.Path(), name, does)));
        ASSERT_TRUE(WaitReady(name));
    }
    HRESULT AskSize() {
        OEMDMPARAM param = {};
        return object->DevMode(OEMDM_SIZE, &param);
    }

    ScratchRegistry registry;
    TemporaryFolder folder;
    PlugInDll dll;
    driverhost::ComRef<IPrintOemUI2> object = dll.CreateObject();
    static HWND Popup(DWORD exStyle, DWORD style) {
        return CreateWindowExW(exStyle, L"STATIC", L"mine", WS_POPUP | style, 0, 0, 10, 10, nullptr, nullptr,
                               nullptr, nullptr);
    }
    HWND window = Popup(0, WS_VISIBLE);
    HWND hidden = Popup(WS_EX_TOPMOST, 0);  // the search meets it first
};

TEST_F(CompanionGate, IsShutWhileTheCompanionShowsAWindow) {
    EXPECT_EQ(window, FindVisibleWindowOfProcess(0)) << "0 means this process";
    EXPECT_EQ(S_OK, AskSize()) << "the windows of the program that prints do not count";
    Start(L"kzpwriterINTERACTION.exe", kShowsWindow);
    EXPECT_EQ(E_FAIL, AskSize());
    QuitAll();
    EXPECT_EQ(S_OK, AskSize());
    ShowWindow(window, SW_HIDE);
    EXPECT_EQ(nullptr, FindVisibleWindowOfProcess(0));
}

TEST_F(CompanionGate, StaysOpenForACompanionWithoutAWindowAndForOthersWithOne) {
    Start(L"KzpWriterInteraction.exe", kHoldsMapping);
    Start(L"KzpWriterInteraction2.exe", kShowsWindow);
    EXPECT_TRUE(SignalMapping(false, true).IsValid());
    EXPECT_EQ(S_OK, AskSize()) << "the signal does not count here either";
    wchar_t self[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, self, MAX_PATH);
    EXPECT_EQ(0u, FindOtherProcessByName(wcsrchr(self, L'\\') + 1)) << "this process is no other";
}

}  // namespace
}  // namespace kzp::test

// How strict the host is: what the other tests rely on, for a host that forgave everything would see nothing.
#include <gtest/gtest.h>

#include "tests/support/Guarded.h"
#include "tests/support/HostedSheet.h"
#include "tests/support/ScratchRegistry.h"
#include "tools/driverhost/Script.h"

namespace kzp::test {
namespace {

using namespace driverhost;

// Every entry point has an object of its own, and the DLL may go in between: the session is the first to keep
// it. What a session showed is inaccessible once it is over.
TEST(Session, CallsAsTheContractSaysAndLeavesNothingToTouchBehind) {
    const PlugIn plugIn;
    std::vector<const void*> shown;
    {
        const HMODULE before = GetModuleHandleW(L"KZPWriterUI.dll");
        DocumentSession session(plugIn, NoPrinter());
        EXPECT_EQ(nullptr, before);
        EXPECT_NE(nullptr, GetModuleHandleW(L"KZPWriterUI.dll"));
        EXPECT_EQ(session.PresentItems(), S_OK);
        const OEMCUIPPARAM& param = session.UIParam();
        EXPECT_EQ(reinterpret_cast<ULONG_PTR>(param.pOEMDM) % 2, 1u) << "at any address";
        shown = {&param, param.pDrvOptItems, param.pOEMDM};
        OPTITEM foreign = {};
        DriverHelper& helper = session.Helper();
        EXPECT_EQ(helper.DrvUpdateUISetting(param.poemuiobj, &foreign, 0, 1), E_INVALIDARG);
        EXPECT_EQ(helper.DrvUpdateUISetting(nullptr, param.pDrvOptItems, 0, 1), E_INVALIDARG);
        EXPECT_FALSE(helper.Announcements().back().rightSheet);
    }
    for (const void* const gone : shown) {  // cppcheck-suppress invalidLifetime ; which is looked at
        const auto touch = [&] { (void)*static_cast<const volatile BYTE*>(gone); };
        EXPECT_EQ(RunGuarded(touch).code, EXCEPTION_ACCESS_VIOLATION);
    }
}

TEST(Script, StopsAtTheFirstLineThatFails) {
    const ScratchRegistry registry;
    HostedSheet host(NoPrinter());
    Script script(host.run, L"out");
    for (const wchar_t* const line : {L"page 3", L"expect page 3", L"expect page 1", L"ok"})
        script.Add(line);
    try {
        host.run.Show();
        ADD_FAILURE() << "the wrong expectation went unnoticed";
    } catch (const HostError& error) {
        EXPECT_EQ(error.text, L"page is \"3\", not \"1\"");
    }
    EXPECT_EQ(host.sheet.Applied(), 0);
    for (const wchar_t* const wrong : {L"clik 3", L"type", L"ok ok", L"type 1 \"x"})
        EXPECT_THROW(Script::Check(wrong), HostError) << Utf8(wrong);
}

}  // namespace
}  // namespace kzp::test

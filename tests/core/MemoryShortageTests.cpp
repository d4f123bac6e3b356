// An operation that gets no memory at all says so; what is thrown inside it then lives in the plug-in's own
// small reserve, which must not run out.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "driverkit/printoem.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/PlugInDll.h"
#include "tests/support/ScratchRegistry.h"

namespace kzp::test {
namespace {

int g_refusals = 0;  // -1: every allocation

void* __cdecl Allocate(size_t bytes) {
    if (g_refusals == 0)
        return std::malloc(bytes);
    if (g_refusals > 0)
        --g_refusals;
    return nullptr;
}

int g_traces = 0;

void WINAPI CountTrace(const wchar_t*) {
    ++g_traces;
}

TEST(MemoryShortage, IsAnsweredAgainAndAgain) {
    const ScratchRegistry registry;
    const PlugInDll dll;
    IPrintOemUI2* const object = dll.Create();
    ASSERT_NE(nullptr, object);
    std::wstring longName(1000, L'n');  // its copy needs memory
    OEMCUIPPARAM param = {};
    param.pPrinterName = longName.data();
    const auto present = [&](int refusals) {
        g_refusals = refusals;
        const HRESULT result = object->CommonUIProp(OEMCUIP_DOCPROP, &param);
        g_refusals = 0;
        return result;
    };
    {
        const ImportPatch allocation(dll.Module(), "malloc", AddressOf(&Allocate));
        EXPECT_EQ(E_OUTOFMEMORY, present(1));
        const ImportPatch trace(dll.Module(), "OutputDebugStringW", AddressOf(CountTrace));
        for (int time = 0; time < 100; ++time)
            EXPECT_EQ(E_OUTOFMEMORY, present(-1));
        EXPECT_EQ(100, g_traces) << "a trace takes no memory";
    }
    EXPECT_EQ(S_OK, present(0));
    object->Release();
}

}  // namespace
}  // namespace kzp::test

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

int g_refusals = 0;

void* __cdecl Allocate(size_t bytes) {
    return g_refusals-- > 0 ? nullptr : std::malloc(bytes);
}

int g_traces = 0;

void WINAPI CountTrace(const wchar_t*) {
    ++g_traces;
}

TEST(MemoryShortage, IsAnsweredAgainAndAgain) {
    const ScratchRegistry registry;
    const PlugInDll dll;
    const driverhost::ComRef<IPrintOemUI2> object = dll.CreateObject();
    std::wstring longName(1000, L'n');  // its copy needs memory
    OEMCUIPPARAM param = {};
    param.pPrinterName = longName.data();
    const ImportPatch allocation(dll.Module(), "malloc", AddressOf(&Allocate));
    const ImportPatch trace(dll.Module(), "OutputDebugStringW", AddressOf(CountTrace));
    for (int time = 1; time <= 100; ++time) {
        // The first exception of a thread takes a few bytes that the run-time cannot do without.
        g_refusals = time == 1 ? 1 : 1'000'000;
        const HRESULT refused = object->CommonUIProp(OEMCUIP_DOCPROP, &param);
        g_refusals = 0;
        EXPECT_EQ(E_OUTOFMEMORY, refused);
        EXPECT_EQ(time, g_traces) << "a trace takes no memory";
    }
    EXPECT_EQ(S_OK, object->CommonUIProp(OEMCUIP_DOCPROP, &param));
}

}  // namespace
}  // namespace kzp::test

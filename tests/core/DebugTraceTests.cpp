// What is traced, and that it is traced without memory, too.
#include "core/DebugTrace.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "tests/support/ImportPatch.h"
#include "tests/support/PlugInDll.h"
#include "tests/support/ScratchRegistry.h"

namespace kzp::test {
namespace {

std::vector<std::wstring> g_traces;

void WINAPI NoteText(const wchar_t* text) {
    g_traces.emplace_back(text);
}

TEST(DebugTrace, WritesACutTextAsWellAndTellsOfIt) {
    const ImportPatch patch(GetModuleHandleW(nullptr), "OutputDebugStringW", AddressOf(NoteText));
    g_traces.clear();
    EXPECT_FALSE(DebugTrace(nullptr));
    EXPECT_TRUE(g_traces.empty());
    for (const size_t length : {259u, 260u, 261u, 5000u}) {
        g_traces.clear();
        EXPECT_EQ(length <= 260, DebugTrace(L"%d%s", 7, std::wstring(length - 1, L'x').c_str()));
        const std::wstring expected = L"7" + std::wstring(std::min<size_t>(length, 260) - 1, L'x');
        EXPECT_EQ(std::vector{expected}, g_traces) << length;
    }
}

int g_refusals = 0;

void* __cdecl Allocate(size_t bytes) {
    return g_refusals-- > 0 ? nullptr : std::malloc(bytes);
}

// What is thrown then lives in the plug-in's own small reserve, which must not run out.
TEST(DebugTrace, TellsOfEveryOperationThatGetsNoMemoryAtAll) {
    g_traces.clear();
    const ScratchRegistry registry;
    const PlugInDll dll;
    const driverhost::ComRef<IPrintOemUI2> object = dll.CreateObject();
    std::wstring longName(1000, L'n');  // its copy needs memory
    OEMCUIPPARAM param = {};
    param.pPrinterName = longName.data();
    const ImportPatch allocation(dll.Module(), "malloc", AddressOf(&Allocate));
    const ImportPatch trace(dll.Module(), "OutputDebugStringW", AddressOf(NoteText));
    for (int time = 1; time <= 100; ++time) {
        // The first exception of a thread takes a few bytes that the run-time cannot do without.
        g_refusals = time == 1 ? 1 : 1'000'000;
        const HRESULT refused = object->CommonUIProp(OEMCUIP_DOCPROP, &param);
        g_refusals = 0;
        EXPECT_EQ(E_OUTOFMEMORY, refused);
        EXPECT_EQ(time, std::ssize(g_traces)) << "a trace takes no memory";
    }
    EXPECT_EQ(S_OK, object->CommonUIProp(OEMCUIP_DOCPROP, &param));
}

}  // namespace
}  // namespace kzp::test

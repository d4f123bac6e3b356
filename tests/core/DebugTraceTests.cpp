// What is traced, and that it is traced without memory, too.
#include "core/DebugTrace.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <string>
#include <thread>
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

thread_local bool t_refused = false;
std::atomic<int> g_told = 0;

void* __cdecl Allocate(size_t bytes) {
    return t_refused ? nullptr : std::malloc(bytes);
}

void WINAPI CountTrace(const wchar_t*) {
    ++g_told;
}

// What is thrown then lives in the plug-in's own small reserves, which must not run out: more threads throw
// at once than these have places.
TEST(DebugTrace, TellsOfEveryOperationThatGetsNoMemoryAtAll) {
    constexpr int kThreads = 24, kTimes = 50;
    const ScratchRegistry registry;
    const PlugInDll dll;
    const driverhost::ComRef<IPrintOemUI2> object = dll.CreateObject();
    std::wstring longName(1000, L'n');  // its copy needs memory
    OEMCUIPPARAM param = {};
    param.pPrinterName = longName.data();
    const ImportPatch allocation(dll.Module(), "malloc", AddressOf(&Allocate));
    const ImportPatch trace(dll.Module(), "OutputDebugStringW", AddressOf(CountTrace));
    std::atomic<int> refused = 0;
    const auto fail = [&] {
        t_refused = true;
        for (int time = 0; time < kTimes; ++time)
            refused += object->CommonUIProp(OEMCUIP_DOCPROP, &param) == E_OUTOFMEMORY;
        t_refused = false;
    };
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread)
        threads.emplace_back(fail);
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(kThreads * kTimes, refused);
    EXPECT_EQ(refused, g_told) << "a trace takes no memory";
    EXPECT_EQ(S_OK, object->CommonUIProp(OEMCUIP_DOCPROP, &param));
}

}  // namespace
}  // namespace kzp::test

// Counting from two threads at once: while one gives its reference back, the other does so in between, once
// before each single instruction of the first.
#include <gtest/gtest.h>

#include <functional>
#include <thread>

#include "tests/support/ImportPatch.h"
#include "tests/support/PlugInDll.h"

namespace kzp::test {
namespace {

constexpr DWORD kTrapFlag = 0x100;

int g_instructionsLeft = 0;  // until the other thread runs
std::function<void()>* g_other = nullptr;

// A breakpoint begins the single steps of the thread, and another one ends them.
LONG CALLBACK Step(EXCEPTION_POINTERS* exception) {
    CONTEXT& context = *exception->ContextRecord;
    if (exception->ExceptionRecord->ExceptionCode == EXCEPTION_BREAKPOINT) {
        context.Rip = reinterpret_cast<DWORD64>(exception->ExceptionRecord->ExceptionAddress) + 1;
        context.EFlags ^= kTrapFlag;
        return EXCEPTION_CONTINUE_EXECUTION;
    }
    if (exception->ExceptionRecord->ExceptionCode != EXCEPTION_SINGLE_STEP)
        return EXCEPTION_CONTINUE_SEARCH;
    if (--g_instructionsLeft == 0)
        std::thread(*g_other).join();
    context.EFlags |= kTrapFlag;
    return EXCEPTION_CONTINUE_EXECUTION;
}

// Runs `one` on this thread and `other` on a second one, before instruction number `instruction` of `one`.
// Answers false when `one` had come to its end by then; `other` has run all the same.
template <class One>
bool Interleave(int instruction, const One& one, std::function<void()> other) {
    g_instructionsLeft = instruction;
    g_other = &other;
    void* const handler = AddVectoredExceptionHandler(1, Step);
    __debugbreak();
    one();
    __debugbreak();
    RemoveVectoredExceptionHandler(handler);
    if (g_instructionsLeft <= 0)
        return true;
    other();
    return false;
}

void* g_watched = nullptr;
int g_frees = 0;
decltype(&std::free) g_free = nullptr;

// The watched block stays: a second free of it is to be counted, not suffered.
void __cdecl CountFree(void* block) {
    if (block == g_watched)
        ++g_frees;
    else
        g_free(block);
}

struct Counting : testing::Test {
    // `born` answers an object with one reference.
    void ExpectOneFree(const std::function<IUnknown*()>& born) {
        const ImportPatch patch(dll.Module(), "free", AddressOf(CountFree));
        g_free = patch.Original<decltype(g_free)>();
        bool more = true;
        for (int instruction = 1; more; ++instruction) {
            IUnknown* const object = born();
            object->AddRef();
            g_watched = object;
            g_frees = 0;
            ULONG answers[2] = {77, 77};
            more = Interleave(
                instruction, [&] { answers[0] = object->Release(); },
                [&] { answers[1] = object->Release(); });
            ASSERT_EQ(1, g_frees) << "before instruction " << instruction;
            EXPECT_EQ(1u, answers[0] + answers[1]) << "one was told 1, the other 0";
            g_free(std::exchange(g_watched, nullptr));
        }
    }

    IClassFactory* Factory() const {
        IClassFactory* factory = nullptr;
        EXPECT_EQ(S_OK,
                  dll.GetClassObject(CLSID_OEMUI, IID_IClassFactory, reinterpret_cast<void**>(&factory)));
        return factory;
    }

    PlugInDll dll;
};

TEST_F(Counting, OneOfTwoThreadsFreesTheObject) {
    ExpectOneFree([this] { return dll.Create(); });
}

TEST_F(Counting, OneOfTwoThreadsFreesTheFactory) {
    ExpectOneFree([this] { return Factory(); });
}

TEST_F(Counting, ServerLocksAloneKeepTheDllLoaded) {
    IUnknown* const object = dll.Create();
    EXPECT_EQ(S_OK, dll.CanUnloadNow()) << "a live object does not count";
    IClassFactory* const factory = Factory();
    bool more = true;
    for (int instruction = 1; more; ++instruction) {
        factory->LockServer(TRUE);
        more =
            Interleave(instruction, [&] { factory->LockServer(TRUE); }, [&] { factory->LockServer(FALSE); });
        EXPECT_EQ(S_FALSE, dll.CanUnloadNow()) << "before instruction " << instruction;
        factory->LockServer(FALSE);
        EXPECT_EQ(S_OK, dll.CanUnloadNow()) << "before instruction " << instruction;
    }
    factory->Release();
    object->Release();
}

}  // namespace
}  // namespace kzp::test

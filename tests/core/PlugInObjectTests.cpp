// The factory and the plug-in object: the kit's identifiers and slots, counting, and the plain operations.
// Identifiers and slots stand here once more, for a wrong one in the headers would be wrong on both sides.
#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/Counters.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/ScratchRegistry.h"
#include "tools/driverhost/PlugIn.h"

namespace kzp::test {
namespace {

void* const kPoison = reinterpret_cast<void*>(0xDEAD);

template <class... Arguments>
HRESULT CallSlot(void* object, int slot, Arguments... arguments) {
    using Slot = HRESULT(STDMETHODCALLTYPE*)(void*, Arguments...);
    return (*static_cast<Slot**>(object))[slot](object, arguments...);
}

HRESULT CallSlotWithPoison(void* object, int slot) {
    void* const p = kPoison;
    return CallSlot(object, slot, p, p, p, p, p, p, p, p, p);
}

// The driver's helper object: counts its references, refuses its interface at the time it is told, and may
// fault when released. Its own operations answer their slot.
struct Helper final : IPrintOemDriverUI {
    virtual ~Helper() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override {
        const bool give = ++queries != refusedQuery && riid == IID_IPrintOemDriverUI;
        *object = give ? this : nullptr;
        references += give;
        return give ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override {
        --references;
        if (fault)
            fault();
        return references;
    }
    HRESULT STDMETHODCALLTYPE DrvGetDriverSetting(PVOID, PCSTR, PVOID, DWORD, PDWORD, PDWORD) override {
        return 3;
    }
    HRESULT STDMETHODCALLTYPE DrvUpgradeRegistrySetting(HANDLE, PCSTR, PCSTR) override { return 4; }
    HRESULT STDMETHODCALLTYPE DrvUpdateUISetting(PVOID, PVOID, DWORD, DWORD) override { return 5; }

    int refusedQuery = 0;
    void (*fault)() = nullptr;
    int queries = 0;
    ULONG references = 1;
};

std::wstring g_trace;

void WINAPI RecordTrace(const wchar_t* text) {
    g_trace += text;
}

struct PlugInObject : testing::Test {
    PlugInObject() {
        EXPECT_EQ(S_OK, getClassObject(CLSID_OEMUI, IID_IClassFactory, factory.Put()));
        g_trace.clear();
    }

    const ScratchRegistry registry;
    const driverhost::PlugIn dll;
    decltype(&DllGetClassObject) getClassObject =
        dll.Export<decltype(&DllGetClassObject)>("DllGetClassObject");
    decltype(&DllCanUnloadNow) canUnloadNow = dll.Export<decltype(&DllCanUnloadNow)>("DllCanUnloadNow");
    driverhost::ComRef<IPrintOemUI2> object = dll.CreateObject();
    driverhost::ComRef<IClassFactory> factory;
    const ImportPatch trace{dll.Module(), "OutputDebugStringW", AddressOf(RecordTrace)};
};

TEST(Identifiers, AreTheKits) {
    const std::pair<GUID, PCWSTR> expected[] = {
        {CLSID_OEMUI, L"{ABCE80D7-9F46-11D1-882A-00C04FB961EC}"},
        {IID_IPrintOemCommon, L"{7F42285E-91D5-11D1-8820-00C04FB961EC}"},
        {IID_IPrintOemUI, L"{C6A7A9D0-774C-11D1-947F-00A0C90640B8}"},
        {IID_IPrintOemUI2, L"{292515F9-B54B-489B-9275-BAB56821395E}"},
        {IID_IPrintOemDriverUI, L"{92B05D50-78BC-11D1-9480-00A0C90640B8}"},
        {IID_IPrintCoreUI2, L"{085CCFCA-3ADF-4C9E-B491-D851A6EDC997}"},
    };
    for (const auto& [id, text] : expected) {
        wchar_t own[40] = {};
        StringFromGUID2(id, own, 40);
        EXPECT_STREQ(text, own);
    }
}

TEST_F(PlugInObject, IsServedForItsClassAndInterfacesAlone) {
    void* answer = nullptr;
    EXPECT_EQ(S_OK, object->QueryInterface(IID_IUnknown, &answer));
    EXPECT_EQ(object.Get(), answer);
    EXPECT_EQ(1u, object->Release());
    const size_t blocks = CountHeapBlocks();
    void* answers[] = {kPoison, kPoison, kPoison};
    EXPECT_EQ(E_NOINTERFACE, object->QueryInterface(IID_IPrintOemUI, &answers[0]));
    EXPECT_EQ(E_NOINTERFACE, factory->CreateInstance(nullptr, IID_IPrintOemUI, &answers[1]));
    EXPECT_EQ(E_NOINTERFACE, getClassObject(CLSID_OEMUI, IID_IPrintOemUI, &answers[2]));
    EXPECT_TRUE(!answers[0] && !answers[1] && !answers[2]);
    EXPECT_EQ(blocks, CountHeapBlocks()) << "refused objects and factories are freed";
    CLSID foreign = CLSID_OEMUI;
    foreign.Data4[7] ^= 1;
    answer = kPoison;
    EXPECT_EQ(CLASS_E_CLASSNOTAVAILABLE, getClassObject(foreign, IID_IClassFactory, &answer));
    EXPECT_EQ(kPoison, answer) << "a foreign class leaves the pointer alone";
    EXPECT_EQ(CLASS_E_NOAGGREGATION, factory->CreateInstance(object.Get(), IID_IUnknown, &answer));
}

// Every change of a count is answered with the count that it left: with threads that meet, a change that is
// lost and a count that is looked at a second time both show in the sum of the answers.
TEST_F(PlugInObject, IsCountedByTwoThreadsAtOnce) {
    EXPECT_EQ(S_OK, canUnloadNow()) << "live objects do not count";
    factory->LockServer(TRUE);
    const auto count = [&](LONG64* sum) {
        for (int time = 0; time < 2'000'000; ++time) {
            *sum += object->AddRef();
            *sum -= object->Release() + LONG64{1};
            factory->LockServer(TRUE);
            factory->LockServer(FALSE);
        }
    };
    LONG64 sums[2] = {};
    std::thread other(count, &sums[1]);
    count(&sums[0]);
    other.join();
    EXPECT_EQ(0, sums[0] + sums[1]);
    EXPECT_EQ(S_FALSE, canUnloadNow());
    factory->LockServer(FALSE);
    EXPECT_EQ(S_OK, canUnloadNow());
}

TEST_F(PlugInObject, HasItsOperationsInTheKitsSlots) {
    DWORD signature = 0, needed = 0;
    EXPECT_EQ(S_OK, CallSlot(object.Get(), 3, OEMGI_GETSIGNATURE, &signature, 4, &needed));
    EXPECT_EQ(0x42524D4Bu, signature);
    OEMDMPARAM record = {};
    EXPECT_EQ(S_OK, CallSlot(object.Get(), 4, OEMDM_SIZE, &record));
    EXPECT_EQ(560u, record.cbBufSize);
    EXPECT_EQ(E_POINTER, CallSlot(object.Get(), 5, nullptr));
    OEMCUIPPARAM items = {};
    items.cOEMOptItems = 5;
    EXPECT_EQ(S_OK, CallSlot(object.Get(), 6, OEMCUIP_PRNPROP, &items));
    EXPECT_EQ(0u, items.cOEMOptItems);
    EXPECT_EQ(E_FAIL, CallSlot(object.Get(), 7, nullptr, nullptr)) << "a sheet without its information";
    for (int slot = 8; slot <= 18; ++slot)
        EXPECT_EQ(E_NOTIMPL, CallSlotWithPoison(object.Get(), slot)) << slot << " writes and reads nothing";
    INT result = 77;
    EXPECT_EQ(S_OK, CallSlot(object.Get(), 19, nullptr, nullptr, DOCUMENTEVENT_ENDPAGE, 0, nullptr, 0,
                             nullptr, &result));
    EXPECT_EQ(DOCUMENTEVENT_SUCCESS, result);

    Helper helper;
    for (int slot = 3; slot <= 5; ++slot)
        EXPECT_EQ(slot, CallSlotWithPoison(&helper, slot));
}

TEST_F(PlugInObject, TellsOfItselfInFourBytes) {
    DWORD value = 77, needed = 77;
    EXPECT_EQ(E_FAIL, object->GetInfo(OEMGI_GETVERSION, &value, 5, &needed));
    EXPECT_EQ(77u, needed);
    EXPECT_EQ(E_NOTIMPL, object->GetInfo(OEMGI_GETINTERFACEVERSION, &value, 4, &needed));
    EXPECT_EQ(77u, value);
    EXPECT_EQ(4u, needed);
    EXPECT_EQ(S_OK, object->GetInfo(OEMGI_GETVERSION, &value, 0, &needed)) << "no smaller size is refused";
    EXPECT_EQ(0x03050007u, value);
    EXPECT_EQ(E_FAIL, object->GetInfo(OEMGI_GETVERSION, nullptr, 4, &needed));
    EXPECT_EQ(E_FAIL, object->GetInfo(OEMGI_GETVERSION, &value, 4, nullptr));
    EXPECT_EQ(E_FAIL, object->GetInfo(OEMGI_GETVERSION, kPoison, 4, &needed)) << "it cannot be written";
    EXPECT_EQ(0u, g_trace.find(L"KZPPrinterUI::GetInfo (EXCEPTION) [core/KZPPrinterUI,")) << g_trace;
}

// The interface is asked for twice, and the second answer counts.
TEST_F(PlugInObject, TakesTheHelperOncePerObjectAndForTheModule) {
    const struct {
        int refusedQuery;
        HRESULT result, again;
        ULONG references;
        void (*fault)();  // of the helper when it is released
    } cases[] = {{0, S_OK, E_FAIL, 3, nullptr},
                 {1, S_OK, S_OK, 4, [] { throw 1; }},
                 {2, E_NOINTERFACE, E_FAIL, 2, [] { *static_cast<volatile int*>(kPoison) = 1; }}};
    for (const auto& [refusedQuery, result, again, references, fault] : cases) {
        SCOPED_TRACE(refusedQuery);
        Helper helper;
        helper.refusedQuery = refusedQuery;
        helper.fault = fault;
        IPrintOemUI2* const owner = dll.CreateObject().Release();
        EXPECT_EQ(E_POINTER, owner->PublishDriverInterface(nullptr));
        EXPECT_EQ(result, owner->PublishDriverInterface(&helper));
        EXPECT_EQ(again, owner->PublishDriverInterface(&helper));
        EXPECT_EQ(references, helper.references);
        g_trace.clear();
        EXPECT_EQ(0u, owner->Release());
        EXPECT_EQ(references - 1, helper.references) << "the module's reference is never given back";
        EXPECT_EQ(fault ? L"KZPPrinterUI::~KZPPrinterUI (EXCEPTION) [core/KZPPrinterUI,49]\n" : L"", g_trace);
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
TEST_F(PlugInObject, TracesEveryOperationThatGetsNoMemoryAtAll) {
    constexpr int kThreads = 24, kTimes = 50;
    std::wstring longName(1000, L'n');  // its copy needs memory
    OEMCUIPPARAM param = {};
    param.pPrinterName = longName.data();
    const ImportPatch allocation(dll.Module(), "malloc", AddressOf(Allocate));
    const ImportPatch count(dll.Module(), "OutputDebugStringW", AddressOf(CountTrace));
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

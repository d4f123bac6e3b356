// The factory and the plug-in object: the kit's identifiers and slots, counting, and the plain operations.
// Identifiers and slots stand here once more, for a wrong one in the headers would be wrong on both sides.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "tests/support/Counters.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/PlugInDll.h"
#include "tests/support/ScratchRegistry.h"

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

// The driver's helper object: counts its references, gives its interface as often as it is told, and may
// fault when released. Its own operations answer their slot.
class Helper final : public IPrintOemDriverUI {
  public:
    explicit Helper(std::vector<bool> given = {true, true}) : m_given(std::move(given)) {}
    virtual ~Helper() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override {
        const bool give = m_given.at(static_cast<size_t>(queries++)) && riid == IID_IPrintOemDriverUI;
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

    ULONG references = 1;
    int queries = 0;
    void (*fault)() = nullptr;

  private:
    const std::vector<bool> m_given;
};

std::wstring g_trace;

void WINAPI RecordTrace(const wchar_t* text) {
    g_trace += text;
}

struct PlugInObject : testing::Test {
    PlugInObject() { EXPECT_EQ(S_OK, getClassObject(CLSID_OEMUI, IID_IClassFactory, factory.Put())); }

    const ScratchRegistry registry;
    const PlugInDll dll;
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
    for (const IID& accepted : {IID_IUnknown, IID_IPrintOemUI2}) {
        EXPECT_EQ(S_OK, object->QueryInterface(accepted, &answer));
        EXPECT_EQ(object.Get(), answer);
        EXPECT_EQ(1u, object->Release());
    }
    const size_t blocks = CountHeapBlocks();
    const auto expectRefused = [&](const IID& id) {
        void* answers[] = {kPoison, kPoison, kPoison};
        EXPECT_EQ(E_NOINTERFACE, object->QueryInterface(id, &answers[0]));
        EXPECT_EQ(E_NOINTERFACE, factory->CreateInstance(nullptr, id, &answers[1]));
        EXPECT_EQ(E_NOINTERFACE, getClassObject(CLSID_OEMUI, id, &answers[2]));
        EXPECT_TRUE(!answers[0] && !answers[1] && !answers[2]);
    };
    expectRefused(IID_IPrintOemUI);
    expectRefused(IID_IPrintOemCommon);
    for (size_t byte = 0; byte < sizeof(GUID); ++byte) {
        GUID foreign[] = {CLSID_OEMUI, IID_IPrintOemUI2};
        for (GUID& id : foreign)
            reinterpret_cast<BYTE*>(&id)[byte] ^= 1;
        answer = kPoison;
        EXPECT_EQ(CLASS_E_CLASSNOTAVAILABLE, getClassObject(foreign[0], IID_IClassFactory, &answer));
        EXPECT_EQ(kPoison, answer) << "a foreign class leaves the pointer alone";
        expectRefused(foreign[1]);
    }
    EXPECT_EQ(CLASS_E_NOAGGREGATION, factory->CreateInstance(object.Get(), IID_IUnknown, &answer));
    EXPECT_EQ(blocks, CountHeapBlocks()) << "refused objects and factories are freed";
}

// Every change of a count is answered with the count that it left: with threads that meet, a change that is
// lost and a count that is looked at a second time both show in the sum of the answers. How often they meet
// shows in answers that change; on a busy machine it takes a while.
TEST_F(PlugInObject, IsCountedByTwoThreadsAtOnce) {
    constexpr int kMeetings = 3000;
    EXPECT_EQ(S_OK, canUnloadNow()) << "live objects do not count";
    factory->LockServer(TRUE);
    const ULONGLONG end = GetTickCount64() + 5000;
    std::atomic<int> meetings = 0;
    const auto count = [&](LONG64* sum) {
        ULONG last = 0;
        while (meetings < kMeetings && GetTickCount64() < end) {
            for (IUnknown* const each : std::initializer_list<IUnknown*>{object.Get(), factory.Get()}) {
                const ULONG answer = each->AddRef();
                *sum += answer;
                *sum -= each->Release() + LONG64{1};
                meetings += each == factory.Get() && std::exchange(last, answer) != answer;
            }
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
    PROPSHEETUI_INFO sheet = {};
    sheet.Version = PROPSHEETUI_INFO_VERSION;
    sheet.Reason = PROPSHEETUI_REASON_DESTROY;
    EXPECT_EQ(S_OK, CallSlot(object.Get(), 7, &sheet, nullptr));
    EXPECT_EQ(1u, sheet.Result);
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

TEST_F(PlugInObject, ReportsSignatureAndVersionInFourBytes) {
    const struct {
        DWORD mode, size;
        HRESULT result;
        DWORD value, needed;
    } cases[] = {
        {OEMGI_GETSIGNATURE, 4, S_OK, 0x42524D4B, 4},
        {OEMGI_GETVERSION, 0, S_OK, 0x03050007, 4},
        {OEMGI_GETSIGNATURE, 5, E_FAIL, 77, 77},
        {OEMGI_GETINTERFACEVERSION, 4, E_NOTIMPL, 77, 4},
        {OEMGI_GETREQUESTEDHELPERINTERFACES, 4, E_NOTIMPL, 77, 4},
    };
    for (const auto& [mode, size, result, value, needed] : cases) {
        DWORD gotValue = 77, gotNeeded = 77;
        EXPECT_EQ(result, object->GetInfo(mode, &gotValue, size, &gotNeeded)) << mode << " with " << size;
        EXPECT_EQ(value, gotValue) << mode;
        EXPECT_EQ(needed, gotNeeded) << mode;
        EXPECT_EQ(E_FAIL, object->GetInfo(mode, nullptr, 4, &gotNeeded));
        EXPECT_EQ(E_FAIL, object->GetInfo(mode, &gotValue, 4, nullptr));
        EXPECT_EQ(value, gotValue) << mode;
    }
}

// The interface is asked for twice, and the second answer counts.
TEST_F(PlugInObject, TakesTheHelperOncePerObjectAndForTheModule) {
    const struct {
        std::vector<bool> given;
        HRESULT result, again;
        int queries;
        ULONG references;
    } cases[] = {
        {{true, true}, S_OK, E_FAIL, 2, 3},
        {{false, true, true, true}, S_OK, S_OK, 4, 4},
        {{true, false}, E_NOINTERFACE, E_FAIL, 2, 2},
        {{false, false, true, true}, E_NOINTERFACE, S_OK, 4, 3},
    };
    for (const auto& [given, result, again, queries, references] : cases) {
        Helper helper(given);
        IPrintOemUI2* const owner = dll.Create();
        EXPECT_EQ(E_POINTER, owner->PublishDriverInterface(nullptr));
        EXPECT_EQ(result, owner->PublishDriverInterface(&helper));
        EXPECT_EQ(again, owner->PublishDriverInterface(&helper));
        EXPECT_EQ(queries, helper.queries) << "a hand-over too many is not even asked";
        EXPECT_EQ(references, helper.references);
        EXPECT_EQ(0u, owner->Release());
        EXPECT_EQ(references - 1, helper.references) << "the module's reference is never given back";
    }
}

TEST_F(PlugInObject, TracesAHelperThatFaultsWhenReleased) {
    void (*const faults[])() = {
        [] { throw 1; },
        [] { RaiseException(0xE0001234, 0, 0, nullptr); },
        [] { RaiseException(0xE06D7363, EXCEPTION_NONCONTINUABLE, 0, nullptr); },  // C++, of another maker
        [] { *static_cast<volatile int*>(kPoison) = 1; },
    };
    for (const auto& fault : faults) {
        Helper helper;
        IPrintOemUI2* const owner = dll.Create();
        ASSERT_EQ(S_OK, owner->PublishDriverInterface(&helper));
        g_trace.clear();
        helper.fault = fault;
        EXPECT_EQ(0u, owner->Release());
        EXPECT_EQ(L"KZPPrinterUI::~KZPPrinterUI (EXCEPTION) [core/KZPPrinterUI,49]\n", g_trace);
    }
}

TEST_F(PlugInObject, TracesABufferThatCannotBeWritten) {
    DWORD value = 0;
    for (const auto& [buffer, needed] : {std::pair<void*, void*>{&value, kPoison}, {kPoison, &value}}) {
        g_trace.clear();
        EXPECT_EQ(E_FAIL, object->GetInfo(OEMGI_GETVERSION, buffer, 4, static_cast<PDWORD>(needed)));
        EXPECT_EQ(0u, g_trace.find(L"KZPPrinterUI::GetInfo (EXCEPTION) [core/KZPPrinterUI,")) << g_trace;
    }
}

}  // namespace
}  // namespace kzp::test

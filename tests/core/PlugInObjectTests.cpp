// Identity, counting and the plain operations of the factory and of the plug-in object.
#include <gtest/gtest.h>

#include <cwchar>

#include "tests/support/Counters.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/PlugInDll.h"

namespace kzp::test {
namespace {

void* const kPoison = reinterpret_cast<void*>(0xDEAD);

// The driver's helper object: counts its references and may refuse its interface or fault when released.
class Helper final : public IPrintOemDriverUI {
  public:
    virtual ~Helper() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override {
        ++queries;
        if (refuse || !IsEqualIID(riid, IID_IPrintOemDriverUI)) {
            *object = nullptr;
            return E_NOINTERFACE;
        }
        *object = static_cast<IPrintOemDriverUI*>(this);
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override {
        --references;
        if (fault)
            fault();
        return references;
    }
    HRESULT STDMETHODCALLTYPE DrvGetDriverSetting(PVOID, PCSTR, PVOID, DWORD, PDWORD, PDWORD) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE DrvUpgradeRegistrySetting(HANDLE, PCSTR, PCSTR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE DrvUpdateUISetting(PVOID, PVOID, DWORD, DWORD) override { return S_OK; }

    ULONG references = 1;
    int queries = 0;
    bool refuse = false;
    void (*fault)() = nullptr;
};

struct PlugInObject : testing::Test {
    ~PlugInObject() override {
        if (object)
            object->Release();
    }

    PlugInDll dll;
    IPrintOemUI2* object = dll.Create();
};

TEST_F(PlugInObject, ClassObjectIsServedForTheOneClassOnly) {
    void* answer = kPoison;
    EXPECT_EQ(CLASS_E_CLASSNOTAVAILABLE, dll.GetClassObject(IID_IUnknown, IID_IClassFactory, &answer));
    EXPECT_EQ(kPoison, answer) << "a foreign class leaves the pointer alone";

    const size_t blocks = CountHeapBlocks();
    EXPECT_EQ(E_NOINTERFACE, dll.GetClassObject(CLSID_OEMUI, IID_IPrintOemUI2, &answer));
    EXPECT_EQ(nullptr, answer);
    EXPECT_EQ(blocks, CountHeapBlocks()) << "the refused factory is freed";
}

TEST_F(PlugInObject, FactoryHandsOutItsOnlyReference) {
    IClassFactory* factory = nullptr;
    ASSERT_EQ(S_OK, dll.GetClassObject(CLSID_OEMUI, IID_IClassFactory, reinterpret_cast<void**>(&factory)));
    EXPECT_EQ(2u, factory->AddRef());
    EXPECT_EQ(1u, factory->Release());

    IUnknown* outer = object;
    void* answer = kPoison;
    EXPECT_EQ(CLASS_E_NOAGGREGATION, factory->CreateInstance(outer, IID_IUnknown, &answer));
    EXPECT_EQ(E_NOINTERFACE, factory->CreateInstance(nullptr, IID_IPrintOemUI, &answer))
        << "the older interface is refused";
    EXPECT_EQ(nullptr, answer);
    EXPECT_EQ(0u, factory->Release());
}

TEST_F(PlugInObject, AnswersForTwoInterfacesAndCountsThem) {
    ASSERT_NE(nullptr, object);
    for (const IID& accepted : {IID_IUnknown, IID_IPrintOemUI2}) {
        void* answer = nullptr;
        EXPECT_EQ(S_OK, object->QueryInterface(accepted, &answer));
        EXPECT_EQ(object, answer);
        EXPECT_EQ(1u, object->Release());
    }
    for (const IID& refused : {IID_IPrintOemUI, IID_IPrintOemCommon, IID_IClassFactory}) {
        void* answer = kPoison;
        EXPECT_EQ(E_NOINTERFACE, object->QueryInterface(refused, &answer));
        EXPECT_EQ(nullptr, answer);
    }
}

TEST_F(PlugInObject, ReportsSignatureAndVersionInFourBytes) {
    const struct {
        DWORD mode, size;
        HRESULT result;
        DWORD value, needed;
    } cases[] = {
        {OEMGI_GETSIGNATURE, 4, S_OK, 0x42524D4B, 4},
        {OEMGI_GETVERSION, 4, S_OK, 0x03050007, 4},
        {OEMGI_GETVERSION, 0, S_OK, 0x03050007, 4},
        {OEMGI_GETSIGNATURE, 5, E_FAIL, 77, 77},
        {OEMGI_GETSIGNATURE, 8, E_FAIL, 77, 77},
        {OEMGI_GETINTERFACEVERSION, 4, E_NOTIMPL, 77, 4},
        {OEMGI_GETPUBLISHERINFO, 4, E_NOTIMPL, 77, 4},
        {OEMGI_GETREQUESTEDHELPERINTERFACES, 4, E_NOTIMPL, 77, 4},
    };
    for (const auto& [mode, size, result, value, needed] : cases) {
        DWORD gotValue = 77, gotNeeded = 77;
        EXPECT_EQ(result, object->GetInfo(mode, &gotValue, size, &gotNeeded)) << mode << " with " << size;
        EXPECT_EQ(value, gotValue) << mode;
        EXPECT_EQ(needed, gotNeeded) << mode;
    }
    DWORD value = 77;
    EXPECT_EQ(E_FAIL, object->GetInfo(OEMGI_GETSIGNATURE, nullptr, 4, &value));
    EXPECT_EQ(77u, value);
    EXPECT_EQ(E_FAIL, object->GetInfo(OEMGI_GETSIGNATURE, &value, 4, nullptr));
    EXPECT_EQ(77u, value);
}

// Each through its slot, so that a wrong order of slots shows.
TEST_F(PlugInObject, RefusesWhatItDoesNotSupportAndWritesNothing) {
    using Slot =
        HRESULT(STDMETHODCALLTYPE*)(void*, void*, void*, void*, void*, void*, void*, void*, void*, void*);
    auto* const slots = *reinterpret_cast<Slot**>(object);
    for (int slot = 8; slot <= 18; ++slot)
        EXPECT_EQ(E_NOTIMPL, slots[slot](object, kPoison, kPoison, kPoison, kPoison, kPoison, kPoison,
                                         kPoison, kPoison, kPoison))
            << "slot " << slot;
    INT result = 77;
    EXPECT_EQ(S_OK,
              reinterpret_cast<HRESULT(STDMETHODCALLTYPE*)(void*, HANDLE, HDC, INT, ULONG, PVOID, ULONG,
                                                           PVOID, PINT)>(reinterpret_cast<void*>(slots[19]))(
                  object, nullptr, nullptr, DOCUMENTEVENT_ENDPAGE, 0, nullptr, 0, nullptr, &result));
    EXPECT_EQ(DOCUMENTEVENT_SUCCESS, result) << "slot 19 is the document event";
}

TEST_F(PlugInObject, TakesTheHelperOncePerObjectAndForTheModule) {
    Helper helper;
    EXPECT_EQ(E_POINTER, object->PublishDriverInterface(nullptr));
    EXPECT_EQ(S_OK, object->PublishDriverInterface(&helper));
    EXPECT_EQ(3u, helper.references) << "one reference for the object, one for the module";
    EXPECT_EQ(E_FAIL, object->PublishDriverInterface(&helper));
    EXPECT_EQ(2, helper.queries) << "a second hand-over is not even asked";

    EXPECT_EQ(0u, object->Release());
    object = nullptr;
    EXPECT_EQ(2u, helper.references) << "the module's reference is never given back";
}

TEST_F(PlugInObject, SurvivesAHelperThatRefusesItsInterface) {
    Helper helper;
    helper.refuse = true;
    EXPECT_EQ(E_NOINTERFACE, object->PublishDriverInterface(&helper));
    EXPECT_EQ(1u, helper.references);
    helper.refuse = false;
    EXPECT_EQ(S_OK, object->PublishDriverInterface(&helper))
        << "nothing was taken, so it may be offered again";
    object->Release();  // while the helper lives
    object = nullptr;
}

std::wstring g_trace;

void WINAPI RecordTrace(const wchar_t* text) {
    g_trace += text;
}

TEST_F(PlugInObject, TracesAHelperThatFaultsWhenReleased) {
    void (*const faults[])() = {
        [] { throw 1; },
        [] { RaiseException(0xE0001234, 0, 0, nullptr); },
        [] { RaiseException(0xE06D7363, EXCEPTION_NONCONTINUABLE, 0, nullptr); },  // C++, of another maker
        [] { *static_cast<volatile int*>(kPoison) = 1; },
    };
    const ImportPatch patch(dll.Module(), "OutputDebugStringW", AddressOf(RecordTrace));
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
    const ImportPatch patch(dll.Module(), "OutputDebugStringW", AddressOf(RecordTrace));
    void* const readOnly = VirtualAlloc(nullptr, 1, MEM_COMMIT, PAGE_READONLY);
    DWORD value = 0;
    const struct {
        void* buffer;
        void* needed;
    } cases[] = {{readOnly, &value}, {&value, readOnly}, {kPoison, &value}};
    for (const auto& [buffer, needed] : cases) {
        g_trace.clear();
        EXPECT_EQ(E_FAIL, object->GetInfo(OEMGI_GETVERSION, buffer, 4, static_cast<PDWORD>(needed)));
        EXPECT_EQ(0u, g_trace.find(L"KZPPrinterUI::GetInfo (EXCEPTION) [core/KZPPrinterUI,")) << g_trace;
    }
    VirtualFree(readOnly, 0, MEM_RELEASE);
}

}  // namespace
}  // namespace kzp::test

#include "tools/driverhost/DriverHelper.h"

#include <mutex>

#include "tools/driverhost/Text.h"

namespace driverhost {

namespace {

std::mutex g_retiredLock;
std::vector<DriverHelper*> g_retired;

}  // namespace

DriverHelper& DriverHelper::Create(bool offersInterface) {
    const std::lock_guard lock(g_retiredLock);
    if (g_retired.empty())
        return *new DriverHelper(offersInterface);
    DriverHelper& helper = *g_retired.back();
    g_retired.pop_back();
    helper.m_offersInterface = offersInterface;
    helper.m_references = 1;
    return helper;
}

void DriverHelper::Retire() {
    Watch(nullptr, nullptr, nullptr);
    onAnnouncement = nullptr;
    m_announcements = {};
    const std::lock_guard lock(g_retiredLock);
    g_retired.push_back(this);
}

void DriverHelper::Watch(const void* uiObject, const DriverTree* driver, const DriverTree* plugIn) {
    m_uiObject = uiObject;
    m_driver = driver;
    m_plugIn = plugIn;
}

HRESULT STDMETHODCALLTYPE DriverHelper::QueryInterface(REFIID riid, void** ppv) {
    const bool driverInterface =
        IsEqualIID(riid, IID_IPrintOemDriverUI) || IsEqualIID(riid, IID_IPrintCoreUI2);
    if (!IsEqualIID(riid, IID_IUnknown) && !(driverInterface && m_offersInterface)) {
        *ppv = nullptr;
        return E_NOINTERFACE;
    }
    *ppv = static_cast<IPrintOemDriverUI*>(this);
    AddRef();
    return S_OK;
}

ULONG STDMETHODCALLTYPE DriverHelper::AddRef() {
    return static_cast<ULONG>(++m_references);
}

ULONG STDMETHODCALLTYPE DriverHelper::Release() {
    return static_cast<ULONG>(--m_references);
}

HRESULT STDMETHODCALLTYPE DriverHelper::DrvGetDriverSetting(PVOID, PCSTR, PVOID, DWORD, PDWORD, PDWORD) {
    return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE DriverHelper::DrvUpgradeRegistrySetting(HANDLE, PCSTR, PCSTR) {
    return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE DriverHelper::DrvUpdateUISetting(PVOID pci, PVOID pOptItem,
                                                           DWORD dwPreviousSelection, DWORD dwMode) {
    Announcement call = {};
    call.position = m_driver ? m_driver->PositionOf(pOptItem) : -1;
    if (call.position < 0 && m_plugIn) {
        call.position = m_plugIn->PositionOf(pOptItem);
        call.plugInItem = call.position >= 0;
    }
    if (call.position >= 0) {
        const auto& item = *static_cast<const OPTITEM*>(pOptItem);
        call.keyword = KeywordOf(item);
        call.selection = item.Sel;
    }
    call.previous = dwPreviousSelection;
    call.mode = dwMode;
    call.rightSheet = pci && pci == m_uiObject;
    m_announcements.push_back(call);
    if (onAnnouncement)
        onAnnouncement(call);
    return call.position >= 0 && call.rightSheet ? S_OK : E_INVALIDARG;
}

std::wstring Describe(const Announcement& announcement) {
    if (announcement.position < 0)
        return L"announced: an item that is not the driver's";
    return Format(L"announced: %ls %d \"%hs\" = %ld (previous %lu, mode %lu)%ls",
                  announcement.plugInItem ? L"plug-in item" : L"driver item", announcement.position,
                  announcement.keyword.c_str(), announcement.selection, announcement.previous,
                  announcement.mode, announcement.rightSheet ? L"" : L" for another sheet");
}

}  // namespace driverhost

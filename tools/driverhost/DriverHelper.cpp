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
        g_retired.push_back(new DriverHelper);
    DriverHelper& helper = *g_retired.back();
    g_retired.pop_back();
    helper.m_offersInterface = offersInterface;
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
    const bool offered =
        IsEqualIID(riid, IID_IUnknown) || (m_offersInterface && IsEqualIID(riid, IID_IPrintOemDriverUI));
    *ppv = offered ? this : nullptr;
    return offered ? S_OK : E_NOINTERFACE;
}

HRESULT STDMETHODCALLTYPE DriverHelper::DrvUpdateUISetting(PVOID pci, PVOID pOptItem,
                                                           DWORD dwPreviousSelection, DWORD dwMode) {
    Announcement call = {
        .previous = dwPreviousSelection, .mode = dwMode, .rightSheet = pci && pci == m_uiObject};
    for (const DriverTree* const tree : {m_driver, m_plugIn}) {
        const int position = tree ? tree->PositionOf(pOptItem) : -1;
        if (position < 0)
            continue;
        const auto& item = *static_cast<const OPTITEM*>(pOptItem);
        call.position = position;
        call.plugInItem = tree == m_plugIn;
        call.keyword = KeywordOf(item);
        call.selection = item.Sel;
    }
    m_announcements.push_back(call);
    if (onAnnouncement)
        onAnnouncement(call);
    return call.position >= 0 && call.rightSheet ? S_OK : E_INVALIDARG;
}

std::wstring Describe(const Announcement& call) {
    if (call.position < 0)
        return L"announced: an item that is not the driver's";
    return Format(L"announced: %ls %d \"%hs\" = %ld (previous %lu, mode %lu)%ls",
                  call.plugInItem ? L"plug-in item" : L"driver item", call.position, call.keyword.c_str(),
                  call.selection, call.previous, call.mode, call.rightSheet ? L"" : L" for another sheet");
}

}  // namespace driverhost

// The helper object that the core driver's user interface publishes to a plug-in. It writes down every
// announcement of a changed selection.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "driverkit/prcomoem.h"
#include "tools/driverhost/DriverTree.h"

namespace driverhost {

// One DrvUpdateUISetting call.
struct Announcement {
    int position = -1;        // in the driver's items; -1: not one of them
    bool plugInItem = false;  // the position is in the plug-in's own items
    std::string keyword;      // empty for a foreign pointer
    LONG selection = 0;       // at the time of the call
    DWORD previous;
    DWORD mode;
    bool rightSheet;  // the caller handed back this sheet's UI object
};

// Owned by the session, not by its references. The plug-in keeps one for good, so the object must outlive the
// session: see Create.
class DriverHelper final : public IPrintOemDriverUI {
  public:
    // A helper stays in memory until the process ends: a plug-in may call the one it was given last at any
    // time. One that was retired serves again.
    static DriverHelper& Create(bool offersInterface);
    void Retire();

    // What announcements are compared with; null trees while no sheet is open.
    void Watch(const void* uiObject, const DriverTree* driver, const DriverTree* plugIn);

    std::vector<Announcement>& Announcements() { return m_announcements; }
    // Called after each announcement, to show it.
    std::function<void(const Announcement&)> onAnnouncement;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** ppv) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE DrvGetDriverSetting(PVOID, PCSTR, PVOID, DWORD, PDWORD, PDWORD) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE DrvUpgradeRegistrySetting(HANDLE, PCSTR, PCSTR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE DrvUpdateUISetting(PVOID pci, PVOID pOptItem, DWORD dwPreviousSelection,
                                                 DWORD dwMode) override;

  private:
    bool m_offersInterface = true;
    const void* m_uiObject = nullptr;
    const DriverTree* m_driver = nullptr;
    const DriverTree* m_plugIn = nullptr;
    std::vector<Announcement> m_announcements;
};

std::wstring Describe(const Announcement& announcement);

}  // namespace driverhost

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
    int position;         // in the driver's items; -1: not one of them
    bool plugInItem;      // the position is in the plug-in's own items
    std::string keyword;  // empty for a foreign pointer
    LONG selection;       // at the time of the call
    DWORD previous;
    DWORD mode;
    bool rightSheet;  // the caller handed back this sheet's UI object
};

// IPrintCoreUI2 begins with the slots of IPrintOemDriverUI; this driver supports none of the later ones.
struct DriverHelperSlots : IPrintOemDriverUI {
    virtual HRESULT STDMETHODCALLTYPE GetOptions() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE SetOptions() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE EnumConstrainedOptions() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE WhyConstrained() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE GetGlobalAttribute() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE GetFeatureAttribute() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE GetOptionAttribute() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE EnumFeatures() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE EnumOptions() { return E_NOTIMPL; }
    virtual HRESULT STDMETHODCALLTYPE QuerySimulationSupport() { return E_NOTIMPL; }
};

// Owned by the session; references are counted, not obeyed. The plug-in keeps one for good, so the object
// must outlive the session: see Create.
class DriverHelper final : public DriverHelperSlots {
  public:
    // A helper stays in memory until the process ends: a plug-in may call the one it was given last at any
    // time. One that was retired serves again.
    static DriverHelper& Create(bool offersInterface);
    void Retire();

    // What announcements are compared with; null trees while no sheet is open.
    void Watch(const void* uiObject, const DriverTree* driver, const DriverTree* plugIn);

    std::vector<Announcement>& Announcements() { return m_announcements; }
    LONG References() const { return m_references; }
    // Called after each announcement, to show it.
    std::function<void(const Announcement&)> onAnnouncement;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** ppv) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;
    HRESULT STDMETHODCALLTYPE DrvGetDriverSetting(PVOID pci, PCSTR Feature, PVOID pOutput, DWORD cbSize,
                                                  PDWORD pcbNeeded, PDWORD pdwOptionsReturned) override;
    HRESULT STDMETHODCALLTYPE DrvUpgradeRegistrySetting(HANDLE hPrinter, PCSTR pFeature,
                                                        PCSTR pOption) override;
    HRESULT STDMETHODCALLTYPE DrvUpdateUISetting(PVOID pci, PVOID pOptItem, DWORD dwPreviousSelection,
                                                 DWORD dwMode) override;

  private:
    explicit DriverHelper(bool offersInterface) : m_offersInterface(offersInterface) {}

    bool m_offersInterface;
    LONG m_references = 1;
    const void* m_uiObject = nullptr;
    const DriverTree* m_driver = nullptr;
    const DriverTree* m_plugIn = nullptr;
    std::vector<Announcement> m_announcements;
};

std::wstring Describe(const Announcement& announcement);

}  // namespace driverhost

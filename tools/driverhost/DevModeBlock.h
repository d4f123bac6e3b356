// The device mode as the core driver keeps it: the public DEVMODEW, the driver's own private part (the
// selections of its features by keyword), and behind them the plug-in's private block.
#pragma once

#include <string>
#include <vector>

#include "driverkit/prcomoem.h"
#include "tools/driverhost/DriverTree.h"
#include "tools/driverhost/PlugIn.h"

namespace driverhost {

class DevModeBlock {
  public:
    // OEMDM_SIZE, for no printer. HostError when the plug-in refuses it, as the driver then has no sheet.
    static DWORD AskSize(const PlugIn& plugIn);

    // Runs the other operations: defaults; the printer's stored block converted into them; and, as for an
    // application that hands its device mode back, the result merged into fresh defaults. `stored` may be
    // empty, short or foreign.
    DevModeBlock(IPrintOemUI2* plugIn, DWORD plugInBytes, HMODULE plugInModule, HANDLE printer,
                 const std::wstring& printerName, const std::vector<BYTE>& stored);

    PDEVMODEW Public() { return reinterpret_cast<PDEVMODEW>(m_bytes.data()); }
    BYTE* PlugInPart();
    DWORD PlugInBytes() const { return m_plugInBytes; }
    std::vector<BYTE> Bytes() const { return {m_bytes.begin(), m_bytes.end()}; }

    // The selections kept in the driver's part go to the tree when a sheet opens, and come back on Apply; the
    // public fields follow them.
    void GiveTo(DriverTree& tree) const;
    void TakeFrom(DriverTree& tree);

  private:
    void StartDefault(const std::wstring& printerName);
    void Call(DWORD mode, void* in);
    void TakeStored(std::vector<BYTE> stored);

    IPrintOemUI2* m_plugIn;
    OEMDMPARAM m_param = {};
    DWORD m_plugInBytes;
    SessionVector<BYTE> m_bytes;
};

// The printer's device mode: the user's own, else the printer's. Empty when the printer has none.
std::vector<BYTE> LoadDevMode(HANDLE printer);
// Stores it for the user, or for the printer where the spooler keeps none for users. Answers a Win32 code.
DWORD StoreDevMode(HANDLE printer, std::vector<BYTE> mode);

}  // namespace driverhost

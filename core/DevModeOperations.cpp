#include "core/DevModeOperations.h"

#include <cstring>

#include "core/InteractionApp.h"
#include "core/KZPPrivateDevMode.h"
#include "core/SignalMapping.h"
#include "support/Spooler.h"

namespace kzp {

namespace {

// The older form of the gate: the companion holds a named mapping while it works on a job.
bool SignalMappingPresent() {
    const HANDLE mapping = OpenFileMappingW(FILE_MAP_ALL_ACCESS, FALSE, kSignalMappingName);
    if (!mapping)
        return false;
    if (void* const view = MapViewOfFile(mapping, FILE_MAP_ALL_ACCESS, 0, 0, kSignalMappingBytes)) {
        UnmapViewOfFile(view);
        CloseHandle(mapping);
        return true;
    }
    // Closed twice on purpose, the second time without effect: kept as it has always been.
    CloseHandle(mapping);
    CloseHandle(mapping);  // cppcheck-suppress doubleFree
    return false;
}

bool CompanionIsBusy() {
    if (!UsesInteractionApp())
        return SignalMappingPresent();
    const DWORD pid = FindOtherProcessByName(kInteractionAppName);
    return pid != 0 && FindVisibleWindowOfProcess(pid) != nullptr;
}

// A printer without stored margins, or with a block longer than ours, starts with none.
void SetDefaults(HANDLE printer, KZPPrivateDevMode* record) {
    record->SetDefaultHeader();
    float margins[4] = {};
    DWORD needed = 0;
    (void)GetPrinterDataW(printer, SpoolerText(kMarginPrinterData), nullptr, reinterpret_cast<BYTE*>(margins),
                          sizeof margins, &needed);
    std::memcpy(record->fMargins, margins, sizeof margins);
}

}  // namespace

HRESULT DevMode(DWORD dwMode, POEMDMPARAM pOemDMParam) {
    if (CompanionIsBusy())
        return E_FAIL;
    if (!pOemDMParam)
        return E_FAIL;

    auto* const out = static_cast<KZPPrivateDevMode*>(pOemDMParam->pOEMDMOut);
    switch (dwMode) {
        case OEMDM_SIZE:
            pOemDMParam->cbBufSize = sizeof(KZPPrivateDevMode);
            break;
        case OEMDM_DEFAULT:
            if (out)
                SetDefaults(pOemDMParam->hPrinter, out);
            break;
        case OEMDM_CONVERT:
            ConvertFrom(pOemDMParam->pOEMDMIn, out);
            break;
        case OEMDM_MERGE:
            // Every merge clears the option selections, whatever the block held.
            ConvertFrom(pOemDMParam->pOEMDMIn, out);
            if (pOemDMParam->pOEMDMIn && out)
                out->SetDefaultHeader();
            break;
        default:
            break;
    }
    return S_OK;
}

}  // namespace kzp

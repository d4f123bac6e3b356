#include "settings/CKZPWriterSettings.h"

#include <winspool.h>

#include <cstddef>
#include <cstring>
#include <iterator>
#include <vector>

namespace kzp {

namespace {

// The same resolutions, in the same order, as the print-quality list of the settings page.
constexpr WORD kResolutions[] = {200, 300, 400, 600, 1200};

}  // namespace

DWORD QualityIndexFromDpi(WORD dpi) {
    DWORD index = 0;
    for (DWORD candidate = 0; candidate < std::size(kResolutions) && kResolutions[candidate] <= dpi;
         ++candidate)
        index = candidate;
    return index;
}

void CKZPWriterSettings::LoadFromPrinter(HANDLE printer) {
    m_printer = printer;
    if (!printer)
        return;
    DWORD needed = 0;
    (void)GetPrinterW(printer, 2, nullptr, 0, &needed);  // fails as expected, with the size
    std::vector<BYTE> buffer(needed);
    if (!GetPrinterW(printer, 2, buffer.data(), needed, &needed) || buffer.size() < sizeof(PRINTER_INFO_2W))
        return;
    const DEVMODEW* const stored = reinterpret_cast<const PRINTER_INFO_2W*>(buffer.data())->pDevMode;
    if (!stored)
        return;
    // The spooler places the device mode at any address.
    DEVMODEW devMode;
    std::memcpy(&devMode, stored, offsetof(DEVMODEW, dmDuplex));
    m_qualityIndex = QualityIndexFromDpi(static_cast<WORD>(devMode.dmPrintQuality));
    m_portrait = devMode.dmOrientation == DMORIENT_PORTRAIT;
    m_paperSize = devMode.dmPaperSize;
    m_color = devMode.dmColor;
}

}  // namespace kzp

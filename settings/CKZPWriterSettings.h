// The writer settings that mirror the printer's default device mode.
#pragma once

#include <windows.h>

namespace kzp {

// Position 0 to 4 of the largest resolution of the list 200, 300, 400, 600, 1200 that is not above `dpi`; 0
// below 200. The number is taken as unsigned, so that the device-independent qualities (DMRES_DRAFT to
// DMRES_HIGH, negative) count as very large and give 4.
DWORD QualityIndexFromDpi(WORD dpi);

class CKZPWriterSettings {
  public:
    virtual ~CKZPWriterSettings() = default;

    // Takes quality, orientation, paper and colour from the printer's default device mode. Without a printer,
    // without its level-2 information or without a device mode the fields stay as they were. The handle is
    // not owned.
    void LoadFromPrinter(HANDLE printer);

    HANDLE Printer() const { return m_printer; }
    DWORD QualityIndex() const { return m_qualityIndex; }
    LONG Color() const { return m_color; }
    bool Portrait() const { return m_portrait; }
    LONG PaperSize() const { return m_paperSize; }

  private:
    HANDLE m_printer = nullptr;
    DWORD m_qualityIndex = 2;
    LONG m_color = 0;         // DMCOLOR_MONOCHROME or DMCOLOR_COLOR once loaded
    bool m_portrait = false;  // true once a portrait device mode is loaded
    LONG m_paperSize = 280;
};

}  // namespace kzp

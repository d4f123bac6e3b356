// The plug-in's private part of the device mode.
#pragma once

#include <cstddef>

#include "driverkit/printoem.h"

namespace kzp {

// Signature ("BRMK") and version that the record carries and that GetInfo reports.
inline constexpr DWORD kWriterSignature = 0x42524D4B;
inline constexpr DWORD kWriterVersion = 0x03050007;

// A persisted record of 560 bytes, little-endian, that the driver keeps behind its public DEVMODEW: with the
// printer, with documents, and on its way between processes and versions. Its offsets are a file format.
//
// The driver places it at any address, so the record is declared packed and may be accessed where it lies.
#pragma pack(push, 1)
struct KZPPrivateDevMode {
    OEM_DMEXTRAHEADER dmOEMExtra;  // 560, kWriterSignature, kWriterVersion
    DWORD dwOptionSel1;            // selections of option items that are not offered; only ever set to 0
    DWORD dwOptionSel2;
    float fMargins[4];   // page margins in millimetres: left, top, right, bottom
    BYTE reserved[524];  // neither read nor written, but carried along by conversions

    // Writes size, signature and version, and clears both option selections; margins and reserved bytes stay.
    void SetDefaultHeader();
};
#pragma pack(pop)

static_assert(sizeof(KZPPrivateDevMode) == 560 && alignof(KZPPrivateDevMode) == 1);
static_assert(offsetof(KZPPrivateDevMode, dwOptionSel1) == 12 &&
              offsetof(KZPPrivateDevMode, fMargins) == 20 && offsetof(KZPPrivateDevMode, reserved) == 36);

// Printer data value that mirrors `fMargins`: REG_BINARY, exactly 16 bytes, in record order.
inline constexpr wchar_t kMarginPrinterData[] = L"KZP Margin";

// The record of the document that a parameter block presents; null without a block and without a record.
inline KZPPrivateDevMode* RecordOf(const OEMCUIPPARAM* param) {
    return param ? static_cast<KZPPrivateDevMode*>(param->pOEMDM) : nullptr;
}

// Brings `in`, a block of any age and of the size that it states itself, into `out`, a whole record. A
// foreign signature only resets `out`'s header and selections. Nothing happens when either pointer is null.
// Never reads behind the stated size of `in` nor writes behind the record `out`.
void ConvertFrom(const void* in, KZPPrivateDevMode* out);

}  // namespace kzp

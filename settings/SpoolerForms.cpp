#include "settings/SpoolerForms.h"

#include <cwchar>
#include <vector>

#include "support/Spooler.h"

namespace kzp {

namespace {

constexpr DWORD kFormLevel = 1;

// A user form whose imageable area is the whole sheet.
FORM_INFO_1W FormRecord(PCWSTR name, SIZEL size) {
    FORM_INFO_1W form = {};
    form.Flags = FORM_USER;
    form.pName = SpoolerText(name);
    form.Size = size;
    form.ImageableArea = {0, 0, size.cx, size.cy};
    return form;
}

}  // namespace

bool IsCustomForm(PCWSTR name) {
    return name && std::wcscmp(name, kCustomFormName) == 0;
}

std::optional<SIZEL> ReadFormSize(HANDLE printer, PCWSTR name) {
    if (!printer)
        return std::nullopt;
    DWORD bytes = 0;
    GetFormW(printer, SpoolerText(name), kFormLevel, nullptr, 0, &bytes);
    if (bytes < sizeof(FORM_INFO_1W))
        return std::nullopt;
    std::vector<BYTE> block(bytes);
    if (!GetFormW(printer, SpoolerText(name), kFormLevel, block.data(), bytes, &bytes))
        return std::nullopt;
    return reinterpret_cast<const FORM_INFO_1W*>(block.data())->Size;
}

bool AddCustomForm(PCWSTR printerName, PCWSTR formName, LONG widthTenthMm, LONG heightTenthMm) {
    const UniquePrinter printer = OpenPrinterWithAllAccess(printerName);
    if (!printer)
        return false;
    FORM_INFO_1W form = FormRecord(formName, {widthTenthMm * 100, heightTenthMm * 100});
    return AddFormW(printer.Get(), kFormLevel, reinterpret_cast<BYTE*>(&form)) != FALSE;
}

bool ResizeCustomForm(HANDLE printer, SIZEL size) {
    FORM_INFO_1W form = FormRecord(kCustomFormName, size);
    return SetFormW(printer, form.pName, kFormLevel, reinterpret_cast<BYTE*>(&form)) != FALSE;
}

}  // namespace kzp

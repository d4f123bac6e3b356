// The device mode as the spooler keeps it.
#include <cstring>

#include "tools/driverhost/DevModeBlock.h"

namespace driverhost {

namespace {

std::vector<BYTE> PrinterInfo(HANDLE printer, DWORD level) {
    DWORD needed = 0;
    GetPrinterW(printer, level, nullptr, 0, &needed);
    std::vector<BYTE> info(needed);
    if (needed == 0 || !GetPrinterW(printer, level, info.data(), needed, &needed))
        return {};
    return info;
}

// Copied, as the spooler aligns it to two bytes only; never beyond the answer's end.
std::vector<BYTE> CopyDevMode(const std::vector<BYTE>& info, const void* devMode) {
    const auto* const begin = static_cast<const BYTE*>(devMode);
    const BYTE* const end = info.data() + info.size();
    if (!begin || begin < info.data() || begin + sizeof(DEVMODEW) > end)
        return {};
    DEVMODEW header;
    std::memcpy(&header, begin, sizeof header);
    const size_t bytes = size_t{header.dmSize} + header.dmDriverExtra;
    if (header.dmSize < sizeof header || bytes > static_cast<size_t>(end - begin))
        return {};
    return std::vector<BYTE>(begin, begin + bytes);
}

}  // namespace

std::vector<BYTE> LoadDevMode(HANDLE printer) {
    const std::vector<BYTE> own = PrinterInfo(printer, 9);
    if (own.size() >= sizeof(PRINTER_INFO_9W)) {
        auto stored = CopyDevMode(own, reinterpret_cast<const PRINTER_INFO_9W*>(own.data())->pDevMode);
        if (!stored.empty())
            return stored;
    }
    const std::vector<BYTE> info = PrinterInfo(printer, 2);
    if (info.size() < sizeof(PRINTER_INFO_2W))
        return {};
    return CopyDevMode(info, reinterpret_cast<const PRINTER_INFO_2W*>(info.data())->pDevMode);
}

DWORD StoreDevMode(HANDLE printer, const DevModeBlock& block) {
    std::vector<BYTE> copy = block.Bytes();
    PRINTER_INFO_9W own = {reinterpret_cast<PDEVMODEW>(copy.data())};
    if (SetPrinterW(printer, 9, reinterpret_cast<BYTE*>(&own), 0))
        return ERROR_SUCCESS;
    std::vector<BYTE> info = PrinterInfo(printer, 2);
    if (info.size() < sizeof(PRINTER_INFO_2W))
        return GetLastError();
    auto* const all = reinterpret_cast<PRINTER_INFO_2W*>(info.data());
    all->pDevMode = own.pDevMode;
    all->pSecurityDescriptor = nullptr;
    return SetPrinterW(printer, 2, info.data(), 0) ? ERROR_SUCCESS : GetLastError();
}

}  // namespace driverhost

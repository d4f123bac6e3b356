#include "tools/driverhost/DevModeBlock.h"

#include <algorithm>
#include <cstring>
#include <cwchar>

#include "tools/driverhost/Text.h"

namespace driverhost {

namespace {

constexpr DWORD kDriverSignature = 0x54534F48;  // "HOST" in memory
constexpr size_t kKeptFeatures = 32;

// The driver's private part; the plug-in's block follows it.
struct DriverPart {
    DWORD signature;
    DWORD count;
    struct {
        char keyword[32];
        LONG selection;
    } features[kKeptFeatures];
};

constexpr size_t kDriverPartAt = sizeof(DEVMODEW);
constexpr size_t kDriverBytes = sizeof(DriverPart) + 1;  // the plug-in's block may lie at any address
constexpr size_t kPlugInPartAt = kDriverPartAt + kDriverBytes;

// What the public device mode says for each option of these features, in the tree's order.
constexpr short kPaper[] = {DMPAPER_LETTER, DMPAPER_TABLOID, DMPAPER_LEGAL, DMPAPER_EXECUTIVE,
                            DMPAPER_A3,     DMPAPER_A4,      DMPAPER_A5,    280};
constexpr short kDpi[] = {200, 300, 400, 600, 1200};

// Left as it is when the driver lacks the feature, or selects what it does not list.
template <size_t N>
void TakeValue(short& field, const OPTITEM* item, const short (&values)[N]) {
    if (item && item->Sel >= 0 && static_cast<size_t>(item->Sel) < N)
        field = values[item->Sel];
}

std::vector<BYTE> PrinterInfo(HANDLE printer, DWORD level) {
    DWORD bytes = 0;
    GetPrinterW(printer, level, nullptr, 0, &bytes);
    std::vector<BYTE> info(bytes);
    if (!GetPrinterW(printer, level, info.data(), bytes, &bytes))
        info.clear();
    return info;
}

}  // namespace

DWORD DevModeBlock::AskSize(const PlugIn& plugIn) {
    OEMDMPARAM param = {.cbSize = sizeof param, .hModule = plugIn.Module()};
    const HRESULT result = plugIn.CreateObject()->DevMode(OEMDM_SIZE, &param);
    if (FAILED(result) || param.cbBufSize < sizeof(OEM_DMEXTRAHEADER))
        throw HostError{
            Format(L"the plug-in refuses its device mode (OEMDM_SIZE answers 0x%08lX): no sheet can be shown",
                   result)};
    return param.cbBufSize;
}

DevModeBlock::DevModeBlock(IPrintOemUI2* plugIn, DWORD plugInBytes, HMODULE plugInModule, HANDLE printer,
                           const std::wstring& printerName, const std::vector<BYTE>& stored)
    : m_plugIn(plugIn), m_plugInBytes(plugInBytes) {
    StartDefault(printerName);
    m_param = {.cbSize = sizeof m_param,
               .pdriverobj = this,
               .hPrinter = printer,
               .hModule = plugInModule,
               .pPublicDMIn = Public(),
               .pPublicDMOut = Public()};
    Call(OEMDM_DEFAULT, nullptr);
    TakeStored(stored);
    // The application's device mode, here the printer's own, into a valid one.
    std::vector<BYTE> application = Bytes();
    Call(OEMDM_DEFAULT, nullptr);
    Call(OEMDM_MERGE, application.data() + kPlugInPartAt);
}

void DevModeBlock::StartDefault(const std::wstring& printerName) {
    m_bytes.assign(kPlugInPartAt + m_plugInBytes, 0);
    DEVMODEW& mode = *Public();
    printerName.copy(mode.dmDeviceName, CCHDEVICENAME - 1);
    mode.dmSpecVersion = DM_SPECVERSION;
    mode.dmDriverVersion = 0x0600;
    mode.dmSize = sizeof mode;
    mode.dmDriverExtra = static_cast<WORD>(kDriverBytes + m_plugInBytes);
    mode.dmFields =
        DM_ORIENTATION | DM_PAPERSIZE | DM_FORMNAME | DM_COPIES | DM_PRINTQUALITY | DM_YRESOLUTION | DM_COLOR;
    mode.dmOrientation = DMORIENT_PORTRAIT;
    mode.dmPaperSize = DMPAPER_LETTER;
    mode.dmCopies = 1;
    mode.dmPrintQuality = mode.dmYResolution = 400;
    mode.dmColor = DMCOLOR_COLOR;
    std::wcscpy(mode.dmFormName, L"Letter");
}

void DevModeBlock::Call(DWORD mode, void* in) {
    m_param.pOEMDMIn = in;
    m_param.pOEMDMOut = PlugInPart();
    m_param.cbBufSize = m_plugInBytes;
    const HRESULT result = m_plugIn->DevMode(mode, &m_param);
    if (FAILED(result))
        throw HostError{Format(L"the plug-in's DevMode(%lu) answers 0x%08lX", mode, result)};
}

BYTE* DevModeBlock::PlugInPart() {
    return m_bytes.data() + kPlugInPartAt;
}

// A stored device mode comes from any machine and any version: it is taken as far as its own sizes hold.
void DevModeBlock::TakeStored(std::vector<BYTE> stored) {
    DEVMODEW old = {};
    std::memcpy(&old, stored.data(), std::min(stored.size(), sizeof old));
    const size_t plugInAt = old.dmSize + kDriverBytes;
    const size_t end = std::min(stored.size(), size_t{old.dmSize} + old.dmDriverExtra);
    DriverPart part;
    if (old.dmSize < sizeof old || end < plugInAt)
        return;
    std::memcpy(&part, stored.data() + old.dmSize, sizeof part);
    if (part.signature != kDriverSignature || part.count > kKeptFeatures)
        return;
    for (auto& feature : part.features)
        feature.keyword[sizeof feature.keyword - 1] = '\0';
    old.dmSize = sizeof old;
    old.dmDriverExtra = Public()->dmDriverExtra;
    *Public() = old;
    std::memcpy(m_bytes.data() + kDriverPartAt, &part, sizeof part);

    OEM_DMEXTRAHEADER header;
    if (end < plugInAt + sizeof header)
        return;
    std::memcpy(&header, stored.data() + plugInAt, sizeof header);
    if (header.dwSize >= sizeof header && header.dwSize <= end - plugInAt)
        Call(OEMDM_CONVERT, stored.data() + plugInAt);
}

void DevModeBlock::GiveTo(DriverTree& tree) const {
    DriverPart part;
    std::memcpy(&part, m_bytes.data() + kDriverPartAt, sizeof part);
    for (DWORD index = 0; index < part.count; ++index) {
        if (OPTITEM* const item = tree.Find(part.features[index].keyword))
            item->Sel = part.features[index].selection;
    }
}

void DevModeBlock::TakeFrom(DriverTree& tree) {
    DriverPart part = {.signature = kDriverSignature, .count = std::min(tree.Count(), DWORD{kKeptFeatures})};
    for (DWORD index = 0; index < part.count; ++index) {
        const OPTITEM& item = tree.All()[index];
        KeywordOf(item).copy(part.features[index].keyword, sizeof part.features[index].keyword - 1);
        part.features[index].selection = item.Sel;
    }
    std::memcpy(m_bytes.data() + kDriverPartAt, &part, sizeof part);

    DEVMODEW& mode = *Public();
    TakeValue(mode.dmOrientation, tree.Find("Orientation"), {DMORIENT_PORTRAIT, DMORIENT_LANDSCAPE});
    TakeValue(mode.dmPaperSize, tree.Find("PaperSize"), kPaper);
    TakeValue(mode.dmPrintQuality, tree.Find("Resolution"), kDpi);
    mode.dmYResolution = mode.dmPrintQuality;
    TakeValue(mode.dmColor, tree.Find("ColorMode"), {DMCOLOR_MONOCHROME, DMCOLOR_COLOR, DMCOLOR_COLOR});
    if (const OPTITEM* const copies = tree.Find("Copies"))
        mode.dmCopies = static_cast<short>(copies->Sel);
    if (const OPTITEM* const paper = tree.Find("PaperSize")) {
        std::memset(mode.dmFormName, 0, sizeof mode.dmFormName);
        SelectedText(*paper).copy(mode.dmFormName, CCHFORMNAME - 1);
    }
}

std::vector<BYTE> LoadDevMode(HANDLE printer) {
    for (const DWORD level : {9u, 2u}) {
        const std::vector<BYTE> info = PrinterInfo(printer, level);
        if (info.empty())
            continue;
        const PDEVMODEW mode = level == 9 ? reinterpret_cast<const PRINTER_INFO_9W*>(info.data())->pDevMode
                                          : reinterpret_cast<const PRINTER_INFO_2W*>(info.data())->pDevMode;
        if (mode)  // copied, as the spooler aligns it to two bytes only
            return std::vector<BYTE>(reinterpret_cast<const BYTE*>(mode), info.data() + info.size());
    }
    return {};
}

DWORD StoreDevMode(HANDLE printer, std::vector<BYTE> mode) {
    PRINTER_INFO_9W own = {reinterpret_cast<PDEVMODEW>(mode.data())};
    if (SetPrinterW(printer, 9, reinterpret_cast<BYTE*>(&own), 0))
        return ERROR_SUCCESS;
    std::vector<BYTE> info = PrinterInfo(printer, 2);
    if (info.empty())
        return GetLastError();
    auto* const all = reinterpret_cast<PRINTER_INFO_2W*>(info.data());
    all->pDevMode = own.pDevMode;
    all->pSecurityDescriptor = nullptr;
    return SetPrinterW(printer, 2, info.data(), 0) ? ERROR_SUCCESS : GetLastError();
}

}  // namespace driverhost

#include "tools/driverhost/DevModeBlock.h"

#include <algorithm>
#include <cstring>

#include "tools/driverhost/Text.h"

namespace driverhost {

namespace {

constexpr DWORD kDriverSignature = 0x54534F48;  // "HOST" in memory
constexpr size_t kKeptFeatures = 32;

// The driver's private part; the plug-in's block follows it.
struct DriverPart {
    DWORD signature;
    DWORD bytes;
    DWORD count;
    DWORD reserved;
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

template <size_t N>
short ValueAt(const short (&values)[N], LONG selection, short otherwise) {
    return selection >= 0 && static_cast<size_t>(selection) < N ? values[selection] : otherwise;
}

LONG SelectionOf(const DriverTree& tree, PCSTR keyword, LONG otherwise) {
    const OPTITEM* const item = tree.Find(keyword);
    return item ? item->Sel : otherwise;
}

}  // namespace

DWORD DevModeBlock::AskSize(const PlugIn& plugIn) {
    OEMDMPARAM param = {};
    param.cbSize = sizeof param;
    param.hModule = plugIn.Module();
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
    m_param.cbSize = sizeof m_param;
    m_param.pdriverobj = this;
    m_param.hPrinter = printer;
    m_param.hModule = plugInModule;
    StartDefault(printerName);
    m_param.pPublicDMIn = m_param.pPublicDMOut = Public();
    Call(OEMDM_DEFAULT, nullptr, PlugInPart());
    TakeStored(stored);
    // The application's device mode, here the printer's own, into a valid one.
    std::vector<BYTE> application = Bytes();
    Call(OEMDM_DEFAULT, nullptr, PlugInPart());
    Call(OEMDM_MERGE, application.data() + kPlugInPartAt, PlugInPart());
}

void DevModeBlock::StartDefault(const std::wstring& printerName) {
    m_bytes.assign(kPlugInPartAt + m_plugInBytes, 0);
    DEVMODEW& mode = *Public();
    wcsncpy(mode.dmDeviceName, printerName.c_str(), CCHDEVICENAME - 1);
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
    wcscpy(mode.dmFormName, L"Letter");
}

HRESULT DevModeBlock::Call(DWORD mode, void* in, void* out) {
    m_param.pOEMDMIn = in;
    m_param.pOEMDMOut = out;
    m_param.cbBufSize = m_plugInBytes;
    const HRESULT result = m_plugIn->DevMode(mode, &m_param);
    m_calls.push_back({mode, result});
    return result;
}

BYTE* DevModeBlock::PlugInPart() {
    return m_bytes.data() + kPlugInPartAt;
}

const BYTE* DevModeBlock::PlugInPart() const {
    return m_bytes.data() + kPlugInPartAt;
}

// A stored device mode comes from any machine and any version: it is taken as far as its own sizes hold.
void DevModeBlock::TakeStored(const std::vector<BYTE>& stored) {
    DEVMODEW old = {};
    std::memcpy(&old, stored.data(), std::min(stored.size(), sizeof old));
    const size_t driverAt = old.dmSize;
    if (old.dmSize < kDriverPartAt || stored.size() < driverAt + kDriverBytes ||
        old.dmDriverExtra < kDriverBytes)
        return;
    DriverPart part;
    std::memcpy(&part, stored.data() + driverAt, sizeof part);
    if (part.signature != kDriverSignature || part.bytes != sizeof part || part.count > kKeptFeatures)
        return;
    const WORD extra = Public()->dmDriverExtra;
    std::memcpy(m_bytes.data(), &old, sizeof old);
    Public()->dmSize = sizeof(DEVMODEW);
    Public()->dmDriverExtra = extra;
    for (auto& feature : part.features)
        feature.keyword[sizeof feature.keyword - 1] = '\0';
    std::memcpy(m_bytes.data() + kDriverPartAt, &part, sizeof part);

    const size_t plugInAt = driverAt + kDriverBytes;
    const size_t end = std::min(stored.size(), driverAt + old.dmDriverExtra);
    OEM_DMEXTRAHEADER header;
    if (end < plugInAt + sizeof header)
        return;
    std::memcpy(&header, stored.data() + plugInAt, sizeof header);
    if (header.dwSize < sizeof header || header.dwSize > end - plugInAt)
        return;
    std::vector<BYTE> copy = stored;
    Call(OEMDM_CONVERT, copy.data() + plugInAt, PlugInPart());
}

void DevModeBlock::GiveTo(DriverTree& tree) const {
    DriverPart part;
    std::memcpy(&part, m_bytes.data() + kDriverPartAt, sizeof part);
    if (part.signature != kDriverSignature)
        return;
    for (DWORD index = 0; index < part.count; ++index) {
        if (OPTITEM* const item = tree.Find(part.features[index].keyword))
            item->Sel = part.features[index].selection;
    }
}

void DevModeBlock::TakeFrom(const DriverTree& tree) {
    DriverPart part = {};
    part.signature = kDriverSignature;
    part.bytes = sizeof part;
    for (const OPTITEM& item : tree.All()) {
        if (part.count == kKeptFeatures)
            break;
        auto& feature = part.features[part.count++];
        std::strncpy(feature.keyword, KeywordOf(item).c_str(), sizeof feature.keyword - 1);
        feature.selection = item.Sel;
    }
    std::memcpy(m_bytes.data() + kDriverPartAt, &part, sizeof part);

    DEVMODEW& mode = *Public();
    mode.dmOrientation = SelectionOf(tree, "Orientation", 0) ? DMORIENT_LANDSCAPE : DMORIENT_PORTRAIT;
    mode.dmPaperSize = ValueAt(kPaper, SelectionOf(tree, "PaperSize", 0), mode.dmPaperSize);
    mode.dmPrintQuality = ValueAt(kDpi, SelectionOf(tree, "Resolution", 2), mode.dmPrintQuality);
    mode.dmYResolution = mode.dmPrintQuality;
    mode.dmColor = SelectionOf(tree, "ColorMode", 1) ? DMCOLOR_COLOR : DMCOLOR_MONOCHROME;
    mode.dmCopies = static_cast<short>(SelectionOf(tree, "Copies", 1));
    if (const OPTITEM* const paper = tree.Find("PaperSize")) {
        const std::wstring form = SelectedText(*paper).substr(0, CCHFORMNAME - 1);
        std::memset(mode.dmFormName, 0, sizeof mode.dmFormName);
        std::copy(form.begin(), form.end(), mode.dmFormName);
    }
}

}  // namespace driverhost

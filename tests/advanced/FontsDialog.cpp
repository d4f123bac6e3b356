#include "tests/advanced/FontsDialog.h"

#include <commctrl.h>

#include <cstring>

#include "tests/support/Counters.h"

namespace kzp::test {

namespace {

Names g_families;

int WINAPI EnumerateInstalled(HDC, LPCWSTR, FONTENUMPROCW report, LPARAM param) {
    int answer = 1;
    for (auto family = g_families.begin(); family != g_families.end() && answer != 0; ++family) {
        LOGFONTW font = {};
        family->copy(font.lfFaceName, LF_FACESIZE - 1);
        const TEXTMETRICW metrics = {};
        answer = report(&font, &metrics, TRUETYPE_FONTTYPE, param);
    }
    return answer;
}

HWND Window(const wchar_t* kind, DWORD style, HWND parent, INT_PTR id = 0) {
    return CreateWindowExW(0, kind, L"", style, 0, 0, 480, 420, parent, reinterpret_cast<HMENU>(id), nullptr,
                           nullptr);
}

}  // namespace

FontsDialog::FontsDialog()
    : plugIn(driverhost::BesideProgram(L"KZPWriterUI.dll")),
      sheet(Window(L"STATIC", WS_OVERLAPPEDWINDOW | WS_VISIBLE, nullptr)),
      apply(Window(L"BUTTON", WS_CHILD | WS_DISABLED, sheet, IDC_SHEET_APPLY)) {
    INITCOMMONCONTROLSEX classes = {sizeof classes, ICC_LISTVIEW_CLASSES};
    InitCommonControlsEx(&classes);
}

FontsDialog::~FontsDialog() {
    DestroyWindow(sheet);
}

void FontsDialog::Install(Names families) {
    g_families = std::move(families);
    if (!m_enumeration)
        m_enumeration.emplace(plugIn.Module(), "EnumFontFamiliesW", AddressOf(&EnumerateInstalled));
}

void FontsDialog::Open(LONG fonts, LONG intent, LONG method, std::optional<DWORD> toldItems) {
    Close();
    driverhost::SessionOptions options = NoPrinter();
    options.features = driverhost::DriverTree::Standard(L"Help item");
    options.features->Items()[kFontsItem].Sel = fonts;
    options.features->Items()[kIntentItem].Sel = intent;
    options.features->Items()[kMethodItem].Sel = method;
    session = std::make_unique<driverhost::DocumentSession>(plugIn, std::move(options));
    session->PresentItems();
    if (toldItems)
        session->UIParam().cDrvOptItems = *toldItems;
    page = Window(L"STATIC", WS_CHILD | WS_VISIBLE, sheet);
    own = Window(L"STATIC", WS_CHILD | WS_VISIBLE, page);
    for (const HWND parent : {own, page})
        Window(L"BUTTON", WS_CHILD | WS_VISIBLE, parent);
    const size_t blocks = CountHeapBlocks(session->UIParam().hOEMHeap);
    session->TellCallback(CPSUICB_REASON_SETACTIVE, page);
    EXPECT_EQ(blocks, CountHeapBlocks(session->UIParam().hOEMHeap)) << "texts are given back";
    dialog = FindWindowExW(page, nullptr, L"#32770", nullptr);
}

void FontsDialog::Close() {
    if (page)
        DestroyWindow(page);
    page = dialog = nullptr;
    EnableWindow(apply, FALSE);
}

void FontsDialog::StoreBytes(const std::vector<BYTE>& bytes) {
    WriteValue(HKEY_CURRENT_USER, kSettingsKey, L"FONTLIST", REG_BINARY, bytes.data(), bytes.size());
}

void FontsDialog::Store(const Names& names) {
    std::vector<BYTE> bytes(names.size() * 64);
    for (size_t record = 0; record < names.size(); ++record)
        std::memcpy(bytes.data() + 64 * record, names[record].data(), 2 * names[record].size());
    StoreBytes(bytes);
}

Names FontsDialog::StoredNames() {
    const auto value = ReadValue(HKEY_CURRENT_USER, kSettingsKey, L"FONTLIST");
    const std::vector<BYTE> bytes = value ? value->bytes : std::vector<BYTE>();
    EXPECT_EQ(0u, bytes.size() % 64);
    Names names;
    for (size_t record = 0; record + 64 <= bytes.size(); record += 64) {
        wchar_t name[32];
        std::memcpy(name, bytes.data() + record, sizeof name);
        EXPECT_EQ(L'\0', name[31]);
        names.emplace_back(name);
    }
    return names;
}

void FontsDialog::Choose(int combo, int index) const {
    SendMessageW(Control(combo), CB_SETCURSEL, static_cast<WPARAM>(index), 0);
    Tell(combo, CBN_SELCHANGE);
}

Names FontsDialog::Listed(bool checkedOnly) const {
    const HWND list = Control(IDC_FONT_LIST);
    Names names;
    for (int index = 0; index < ListView_GetItemCount(list); ++index) {
        wchar_t name[64] = {};
        ListView_GetItemText(list, index, 0, name, 64);
        if (!checkedOnly || ListView_GetCheckState(list, static_cast<UINT>(index)) == 1)
            names.emplace_back(name);
    }
    return names;
}

void FontsDialog::SetImage(int index, UINT image) const {
    ListView_SetItemState(Control(IDC_FONT_LIST), index, INDEXTOSTATEIMAGEMASK(image), LVIS_STATEIMAGEMASK);
}

}  // namespace kzp::test

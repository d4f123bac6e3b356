#include "tests/advanced/FontsDialog.h"

#include <commctrl.h>

#include <cstring>

namespace kzp::test {

namespace {

std::vector<std::wstring> g_families;

int WINAPI EnumerateInstalled(HDC, LPCWSTR, FONTENUMPROCW report, LPARAM param) {
    int answer = 1;
    for (const std::wstring& family : g_families) {
        LOGFONTW font = {};
        family.copy(font.lfFaceName, LF_FACESIZE - 1);
        const TEXTMETRICW metrics = {};
        answer = report(&font, &metrics, TRUETYPE_FONTTYPE, param);
        if (answer == 0)
            break;
    }
    return answer;
}

}  // namespace

FontsDialog::FontsDialog() : plugIn(driverhost::BesideProgram(L"KZPWriterUI.dll")) {
    INITCOMMONCONTROLSEX classes = {sizeof classes, ICC_LISTVIEW_CLASSES};
    InitCommonControlsEx(&classes);
    sheet = CreateWindowExW(0, L"STATIC", L"Sheet", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 480, 420, nullptr,
                            nullptr, nullptr, nullptr);
    apply = CreateWindowExW(0, L"BUTTON", L"Apply", WS_CHILD | WS_VISIBLE | WS_DISABLED, 400, 360, 60, 24,
                            sheet, reinterpret_cast<HMENU>(INT_PTR{IDC_SHEET_APPLY}), nullptr, nullptr);
}

FontsDialog::~FontsDialog() {
    Close();
    DestroyWindow(sheet);
}

void FontsDialog::Install(std::vector<std::wstring> families) {
    g_families = std::move(families);
    if (!m_enumeration)
        m_enumeration.emplace(plugIn.Module(), "EnumFontFamiliesW", AddressOf(&EnumerateInstalled));
}

void FontsDialog::OpenPage(driverhost::SessionOptions options) {
    Close();
    options.needsPrinter = false;
    session = std::make_unique<driverhost::DocumentSession>(plugIn, std::move(options));
    session->PresentItems();
    page = CreateWindowExW(WS_EX_CONTROLPARENT, L"STATIC", L"", WS_CHILD | WS_VISIBLE, 0, 0, 460, 350, sheet,
                           nullptr, nullptr, nullptr);
    own = CreateWindowExW(0, L"STATIC", L"", WS_CHILD | WS_VISIBLE, 0, 0, 99, 99, page, nullptr, nullptr,
                          nullptr);
    for (const HWND parent : {own, page})
        CreateWindowExW(0, L"BUTTON", L"", WS_CHILD | WS_VISIBLE, 0, 0, 9, 9, parent, nullptr, nullptr,
                        nullptr);
    session->TellCallback(CPSUICB_REASON_SETACTIVE, page);
    dialog = FindWindowExW(page, nullptr, L"#32770", nullptr);
}

void FontsDialog::Open(driverhost::SessionOptions options) {
    OpenPage(std::move(options));
    ASSERT_NE(nullptr, dialog);
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

void FontsDialog::Store(const std::vector<std::wstring>& names) {
    std::vector<BYTE> bytes(names.size() * 64);
    for (size_t record = 0; record < names.size(); ++record)
        std::memcpy(bytes.data() + 64 * record, names[record].data(), 2 * names[record].size());
    StoreBytes(bytes);
}

std::vector<BYTE> FontsDialog::StoredBytes() {
    const auto value = ReadValue(HKEY_CURRENT_USER, kSettingsKey, L"FONTLIST");
    return value ? value->bytes : std::vector<BYTE>();
}

std::vector<std::wstring> FontsDialog::StoredNames() {
    const std::vector<BYTE> bytes = StoredBytes();
    EXPECT_EQ(0u, bytes.size() % 64);
    std::vector<std::wstring> names;
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
    SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(combo, CBN_SELCHANGE),
                 reinterpret_cast<LPARAM>(Control(combo)));
}

std::vector<std::wstring> FontsDialog::Listed() const {
    const HWND list = Control(IDC_FONT_LIST);
    std::vector<std::wstring> names;
    for (int index = 0; index < ListView_GetItemCount(list); ++index) {
        wchar_t name[64] = {};
        ListView_GetItemText(list, index, 0, name, 64);
        names.emplace_back(name);
    }
    return names;
}

std::vector<std::wstring> FontsDialog::CheckedNames() const {
    std::vector<std::wstring> names = Listed(), checked;
    for (size_t index = 0; index < names.size(); ++index) {
        if (ListView_GetCheckState(Control(IDC_FONT_LIST), static_cast<UINT>(index)) == 1)
            checked.push_back(names[index]);
    }
    return checked;
}

void FontsDialog::SetImage(int index, UINT image) const {
    ListView_SetItemState(Control(IDC_FONT_LIST), index, INDEXTOSTATEIMAGEMASK(image), LVIS_STATEIMAGEMASK);
}

}  // namespace kzp::test

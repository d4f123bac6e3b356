#include "tools/driverhost/State.h"

#include <algorithm>
#include <cstring>
#include <cwchar>

#include "support/RegistryKey.h"
#include "tools/driverhost/Text.h"

namespace driverhost {

namespace {

constexpr wchar_t kSettingsKey[] = L"SOFTWARE\\Brimlake\\KZPWriter\\3";
constexpr wchar_t kUiValue[] = L"BRMK_KZPWRITER_UI_VALUE";
constexpr wchar_t kMarginValue[] = L"KZP Margin";
constexpr wchar_t kCustomForm[] = L"User Defined";
constexpr wchar_t kNone[] = L"(none)";

std::wstring Margins(const BYTE* floats) {
    float margin[4];
    std::memcpy(margin, floats, sizeof margin);
    return Format(L"left %.2f, top %.2f, right %.2f, bottom %.2f mm", static_cast<double>(margin[0]),
                  static_cast<double>(margin[1]), static_cast<double>(margin[2]),
                  static_cast<double>(margin[3]));
}

const wchar_t* TypeName(DWORD type) {
    switch (type) {
        case REG_SZ:
            return L"REG_SZ";
        case REG_DWORD:
            return L"REG_DWORD";
        case REG_BINARY:
            return L"REG_BINARY";
        default:
            return L"other type";
    }
}

std::wstring Hex(const std::vector<BYTE>& bytes) {
    constexpr size_t kShown = 24;
    std::wstring text;
    for (size_t index = 0; index < std::min(bytes.size(), kShown); ++index)
        text += Format(L"%02X ", bytes[index]);
    if (bytes.size() > kShown)
        text += L"...";
    return text;
}

// "FONTLIST" is read as names.
std::wstring FontNames(const std::vector<BYTE>& bytes) {
    constexpr size_t kRecord = 64;
    std::wstring names;
    for (size_t at = 0; at + kRecord <= bytes.size(); at += kRecord) {
        wchar_t name[kRecord / 2 + 1] = {};
        std::memcpy(name, bytes.data() + at, kRecord);
        names += (names.empty() ? L"" : L", ") + std::wstring(name);
    }
    return Format(L"%lu fonts", static_cast<DWORD>(bytes.size() / kRecord)) + (names.empty() ? L"" : L": ") +
           names;
}

std::wstring PrinterData(HANDLE printer, PCWSTR name, bool margins) {
    std::vector<BYTE> bytes(256);
    DWORD type = 0;
    DWORD needed = 0;
    const DWORD error = GetPrinterDataW(printer, const_cast<PWSTR>(name), &type, bytes.data(),
                                        static_cast<DWORD>(bytes.size()), &needed);
    if (error != ERROR_SUCCESS)
        return error == ERROR_FILE_NOT_FOUND ? std::wstring(kNone) : Win32Error(error);
    bytes.resize(std::min<size_t>(needed, bytes.size()));
    if (margins && bytes.size() == 16)
        return Format(L"%ls, 16 bytes: ", TypeName(type)) + Margins(bytes.data());
    return DescribeValue(type, bytes);
}

std::wstring CustomForm(HANDLE printer) {
    DWORD needed = 0;
    auto* const name = const_cast<PWSTR>(kCustomForm);
    GetFormW(printer, name, 1, nullptr, 0, &needed);
    std::vector<BYTE> bytes(needed);
    if (needed < sizeof(FORM_INFO_1W) || !GetFormW(printer, name, 1, bytes.data(), needed, &needed))
        return kNone;
    const auto& form = *reinterpret_cast<const FORM_INFO_1W*>(bytes.data());
    return Format(L"%.3f x %.3f mm, imageable %.3f, %.3f to %.3f, %.3f mm, flags %lu", form.Size.cx / 1000.0,
                  form.Size.cy / 1000.0, form.ImageableArea.left / 1000.0, form.ImageableArea.top / 1000.0,
                  form.ImageableArea.right / 1000.0, form.ImageableArea.bottom / 1000.0, form.Flags);
}

void Append(State& state, State more) {
    state.insert(state.end(), more.begin(), more.end());
}

}  // namespace

std::wstring DescribeValue(DWORD type, const std::vector<BYTE>& bytes) {
    std::wstring text = Format(L"%ls, %lu bytes: ", TypeName(type), static_cast<DWORD>(bytes.size()));
    if (type == REG_SZ) {
        std::wstring value(bytes.size() / sizeof(wchar_t), L'\0');
        std::memcpy(value.data(), bytes.data(), value.size() * sizeof(wchar_t));
        value.resize(std::wcslen(value.c_str()));
        return text + L"\"" + value + L"\"";
    }
    if (type == REG_DWORD && bytes.size() == sizeof(DWORD)) {
        DWORD value;
        std::memcpy(&value, bytes.data(), sizeof value);
        return text + Format(L"%lu", value);
    }
    return text + Hex(bytes);
}

State DeviceModeState(const DevModeBlock& block) {
    const wchar_t* const section = L"device mode";
    const DEVMODEW& mode = *block.Public();
    State state = {
        {section, L"form", Format(L"\"%ls\" (paper %d)", mode.dmFormName, mode.dmPaperSize)},
        {section, L"orientation", mode.dmOrientation == DMORIENT_LANDSCAPE ? L"landscape" : L"portrait"},
        {section, L"quality", Format(L"%d dpi", mode.dmPrintQuality)},
        {section, L"color", mode.dmColor == DMCOLOR_COLOR ? L"color" : L"monochrome"},
        {section, L"copies", Format(L"%d", mode.dmCopies)},
    };
    const BYTE* const own = block.PlugInPart();
    DWORD head[5];
    if (block.PlugInBytes() < 36)
        return state;
    std::memcpy(head, own, sizeof head);
    const std::string letters(reinterpret_cast<const char*>(own) + 4, 4);
    const auto used = std::count_if(own + 36, own + block.PlugInBytes(), [](BYTE byte) { return byte != 0; });
    Append(state, {
                      {section, L"private size", Format(L"%lu bytes", head[0])},
                      {section, L"private signature",
                       Format(L"0x%08lX (in memory \"%hs\")", head[1], letters.c_str())},
                      {section, L"private version",
                       Format(L"%lu.%lu.%lu.%lu", head[2] >> 24, head[2] >> 16 & 0xFF, head[2] >> 8 & 0xFF,
                              head[2] & 0xFF)},
                      {section, L"option selections", Format(L"%lu, %lu", head[3], head[4])},
                      {section, L"margins", Margins(own + 20)},
                      {section, L"reserved bytes in use", Format(L"%ld", static_cast<LONG>(used))},
                  });
    return state;
}

State SettingsState() {
    State state;
    HKEY opened = nullptr;
    RegOpenKeyExW(HKEY_CURRENT_USER, kSettingsKey, 0, KEY_READ, &opened);
    const kzp::UniqueHandle<kzp::RegistryKeyTraits> key(opened);
    for (DWORD index = 0; key; ++index) {
        wchar_t name[256];
        DWORD characters = 256;
        DWORD type = 0;
        DWORD bytes = 0;
        if (RegEnumValueW(key.Get(), index, name, &characters, nullptr, &type, nullptr, &bytes) !=
            ERROR_SUCCESS)
            break;
        std::vector<BYTE> data(bytes);
        if (RegQueryValueExW(key.Get(), name, nullptr, &type, data.data(), &bytes) != ERROR_SUCCESS)
            continue;
        data.resize(std::min<size_t>(bytes, data.size()));
        const bool fonts = wcscmp(name, L"FONTLIST") == 0 && type == REG_BINARY;
        std::wstring value = DescribeValue(type, data);
        if (fonts)
            value = Format(L"REG_BINARY, %lu bytes: ", bytes) + FontNames(data);
        state.push_back({L"settings", name, std::move(value)});
    }
    std::sort(state.begin(), state.end(),
              [](const StateRow& a, const StateRow& b) { return a.name < b.name; });
    return state;
}

State PrinterState(HANDLE printer) {
    return {
        {L"printer data", kUiValue, PrinterData(printer, kUiValue, false)},
        {L"printer data", kMarginValue, PrinterData(printer, kMarginValue, true)},
        {L"form", kCustomForm, CustomForm(printer)},
    };
}

State ItemsState(const DriverTree& driver, const DriverTree& plugIn) {
    State state;
    const auto add = [&](const DriverTree& tree, const wchar_t* prefix) {
        for (const OPTITEM& item : tree.All()) {
            std::wstring value = SelectedText(item);
            if (item.pOptType)
                value += Format(L" (%ld)", item.Sel);
            if (IsHidden(item))
                value += L" hidden";
            if (item.Flags & OPTIF_HAS_POIEXT)
                value += Format(L" help %lu", item.HelpIndex);
            state.push_back({L"driver items", prefix + FromAnsi(KeywordOf(item).c_str()), std::move(value)});
        }
    };
    add(driver, L"");
    add(plugIn, L"plug-in: ");
    return state;
}

State CaptureState(DocumentSession& session) {
    State state;
    if (session.Mode() == OEMCUIP_DOCPROP)
        Append(state, DeviceModeState(session.DevMode()));
    Append(state, SettingsState());
    Append(state, PrinterState(session.Printer()));
    Append(state, ItemsState(session.Tree(), session.PlugInTree()));
    return state;
}

}  // namespace driverhost

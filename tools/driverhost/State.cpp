#include "tools/driverhost/State.h"

#include <algorithm>
#include <cstring>

#include "support/Spooler.h"
#include "tools/driverhost/Text.h"
#include "tools/standins/common/ScratchRegistry.h"

namespace driverhost {

namespace {

using kzp::standins::kSettingsKey;
using kzp::standins::Value;

constexpr wchar_t kCustomForm[] = L"User Defined";
constexpr size_t kFontRecord = 64;

std::wstring Margins(const BYTE* floats) {
    float margin[4];
    std::memcpy(margin, floats, sizeof margin);
    return Format(L"left %.2f, top %.2f, right %.2f, bottom %.2f mm", static_cast<double>(margin[0]),
                  static_cast<double>(margin[1]), static_cast<double>(margin[2]),
                  static_cast<double>(margin[3]));
}

std::wstring FontNames(const std::vector<BYTE>& bytes) {
    std::wstring names = std::to_wstring(bytes.size() / kFontRecord) + L" fonts";
    for (size_t at = 0; at + kFontRecord <= bytes.size(); at += kFontRecord) {
        wchar_t name[kFontRecord / sizeof(wchar_t) + 1] = {};
        std::memcpy(name, bytes.data() + at, kFontRecord);
        names += (at ? L", " : L": ") + std::wstring(name);
    }
    return names;
}

// Type, byte count, contents.
std::wstring Describe(const Value& value) {
    const std::vector<BYTE>& bytes = value.bytes;
    const std::wstring size = Format(L", %lu bytes: ", static_cast<DWORD>(bytes.size()));
    if (value.type == REG_SZ)
        return L"REG_SZ" + size + L"\"" + value.Text() + L"\"";
    if (value.type == REG_DWORD)
        return L"REG_DWORD" + size + std::to_wstring(value.Dword());
    if (value.type == REG_BINARY)
        return L"REG_BINARY" + size + (bytes.size() == 16 ? Margins(bytes.data()) : FontNames(bytes));
    return Format(L"type %lu", value.type) + size;
}

void AddDeviceMode(State& state, DevModeBlock& block) {
    const DEVMODEW& mode = *block.Public();
    state[L"device mode: form"] = Format(L"\"%ls\" (paper %d)", mode.dmFormName, mode.dmPaperSize);
    state[L"device mode: orientation"] =
        mode.dmOrientation == DMORIENT_LANDSCAPE ? L"landscape" : L"portrait";
    state[L"device mode: quality"] = Format(L"%d dpi", mode.dmPrintQuality);
    state[L"device mode: color"] = mode.dmColor == DMCOLOR_COLOR ? L"color" : L"monochrome";
    state[L"device mode: copies"] = std::to_wstring(mode.dmCopies);

    struct {
        DWORD size, signature, version, selections[2];
    } head;
    if (block.PlugInBytes() < sizeof head + 16)
        return;
    std::memcpy(&head, block.PlugInPart(), sizeof head);
    state[L"device mode: private size"] = Format(L"%lu bytes", head.size);
    state[L"device mode: private signature"] =
        Format(L"0x%08lX (in memory \"%.4hs\")", head.signature, block.PlugInPart() + 4);
    state[L"device mode: private version"] = Format(L"0x%08lX", head.version);
    state[L"device mode: option selections"] = Format(L"%lu, %lu", head.selections[0], head.selections[1]);
    state[L"device mode: margins"] = Margins(block.PlugInPart() + sizeof head);
}

void AddPrinterData(State& state, HANDLE printer) {
    for (const wchar_t* const name : {L"BRMK_KZPWRITER_UI_VALUE", L"KZP Margin"}) {
        Value value = {.bytes = std::vector<BYTE>(256)};
        DWORD needed = 0;
        const DWORD error = GetPrinterDataW(printer, kzp::SpoolerText(name), &value.type, value.bytes.data(),
                                            static_cast<DWORD>(value.bytes.size()), &needed);
        value.bytes.resize(std::min<size_t>(needed, value.bytes.size()));
        state[Format(L"printer data: %ls", name)] =
            error ? Format(L"(none: error %lu)", error) : Describe(value);
    }
}

void AddForm(State& state, HANDLE printer) {
    BYTE bytes[512];
    DWORD needed = 0;
    std::wstring& row = state[Format(L"form: %ls", kCustomForm)] = L"(none)";
    if (!GetFormW(printer, kzp::SpoolerText(kCustomForm), 1, bytes, sizeof bytes, &needed))
        return;
    const auto& form = *reinterpret_cast<const FORM_INFO_1W*>(bytes);
    row = Format(L"%.3f x %.3f mm, imageable %.3f, %.3f to %.3f, %.3f mm, flags %lu", form.Size.cx / 1000.0,
                 form.Size.cy / 1000.0, form.ImageableArea.left / 1000.0, form.ImageableArea.top / 1000.0,
                 form.ImageableArea.right / 1000.0, form.ImageableArea.bottom / 1000.0, form.Flags);
}

void AddItems(State& state, const DriverTree& tree, const wchar_t* prefix) {
    for (const OPTITEM& item : tree.All())
        state[prefix + Format(L"%hs", KeywordOf(item).c_str())] =
            SelectedText(item) + (item.pOptType ? Format(L" (%ld)", item.Sel) : L"") +
            (IsHidden(item) ? L" hidden" : L"") +
            ((item.Flags & OPTIF_HAS_POIEXT) ? Format(L" help %lu", item.HelpIndex) : L"");
}

}  // namespace

State SettingsState() {
    State state;
    const auto key = kzp::standins::OpenKey(HKEY_CURRENT_USER, kSettingsKey);
    for (const std::wstring& name : kzp::standins::ValueNames(key)) {
        if (const auto value = kzp::standins::ReadValue(key, name))
            state[L"settings: " + name] = Describe(*value);
    }
    return state;
}

State CaptureState(DocumentSession& session) {
    State state = SettingsState();
    if (session.Mode() == OEMCUIP_DOCPROP)
        AddDeviceMode(state, session.DevMode());
    AddPrinterData(state, session.Printer());
    AddForm(state, session.Printer());
    AddItems(state, session.Tree(), L"driver items: ");
    AddItems(state, session.PlugInTree(), L"driver items: plug-in: ");
    return state;
}

void PrintState(const State& state) {
    for (const auto& [name, value] : state)
        Say(Format(L"%-38ls | %ls", name.c_str(), value.c_str()));
}

void PrintChanges(const State& before, const State& after) {
    State all = before;
    all.insert(after.begin(), after.end());
    const auto text = [](const State& state, const std::wstring& name) {
        const auto row = state.find(name);
        return row == state.end() ? std::wstring(L"-") : row->second;
    };
    Say(Format(L"%-38ls | %-60ls | %ls", L"changed", L"before", L"after"));
    for (const auto& [name, value] : all) {
        const std::wstring was = text(before, name), is = text(after, name);
        if (was != is)
            Say(Format(L"%-38ls | %-60ls | %ls", name.c_str(), was.c_str(), is.c_str()));
    }
}

}  // namespace driverhost

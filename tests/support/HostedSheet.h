// The delivered plug-in in the driver host, ready to show its sheet: the four objects in the order that they
// need.
#pragma once

#include <cstddef>
#include <cstring>

#include "core/KZPPrivateDevMode.h"
#include "resources/resource.h"
#include "tools/driverhost/SheetRun.h"

namespace kzp::test {

struct HostedSheet {
    driverhost::PlugIn plugIn;
    driverhost::DocumentSession session;
    driverhost::HostSheet sheet;
    driverhost::SheetRun run;

    explicit HostedSheet(driverhost::SessionOptions options = {}, driverhost::SheetOptions shape = {},
                         const std::wstring& dll = driverhost::BesideProgram(L"KZPWriterUI.dll"))
        : plugIn(dll), session(plugIn, std::move(options)), sheet(session, shape), run(sheet) {}
};

inline constexpr wchar_t kCustom[] = L"User-defined size";  // as the list of papers calls it

// One thing that the user does.
struct Use {
    int control;
    const wchar_t* text = nullptr;  // into an edit, or the entry of a list; else a click
};

inline void Do(driverhost::SheetUser& user, const std::vector<Use>& uses) {
    for (const auto& [control, text] : uses) {
        if (control == IDC_PAPER || control == IDC_QUALITY || control == IDC_COLOR)
            user.Select(control, text);
        else if (text)
            user.SetText(control, text);
        else
            user.Click(control);
    }
}

// The margins in the plug-in's private record, which lies at any address: left, top, right, bottom, in
// millimetres.
inline std::vector<float> RecordMargins(driverhost::DocumentSession& session) {
    std::vector<float> margins(4);
    std::memcpy(margins.data(), session.DevMode().PlugInPart() + offsetof(KZPPrivateDevMode, fMargins),
                margins.size() * sizeof margins[0]);
    return margins;
}

// What a drop-down list of the page in front offers, in its order.
inline std::vector<std::wstring> ListEntries(const driverhost::SheetUser& user, int list) {
    const HWND combo = user.Find(list);
    std::vector<std::wstring> entries;
    for (WPARAM index = 0; index < static_cast<WPARAM>(SendMessageW(combo, CB_GETCOUNT, 0, 0)); ++index) {
        std::wstring text(static_cast<size_t>(SendMessageW(combo, CB_GETLBTEXTLEN, index, 0)), L'\0');
        SendMessageW(combo, CB_GETLBTEXT, index, reinterpret_cast<LPARAM>(text.data()));
        entries.push_back(text);
    }
    return entries;
}

// Options of a session without a printer: its handle is null, and nothing is stored by the spooler.
inline driverhost::SessionOptions NoPrinter() {
    driverhost::SessionOptions options;
    options.printer = L"No such printer";
    options.needsPrinter = false;
    return options;
}

}  // namespace kzp::test

#include "tools/driverhost/SheetRun.h"

#include <commctrl.h>
#include <shlobj.h>

#include <algorithm>

#include "tools/driverhost/KeyQueue.h"
#include "tools/driverhost/Text.h"

namespace driverhost {

namespace {

constexpr UINT kTickMilliseconds = 20;
constexpr ULONGLONG kLongestRun = 60'000;   // milliseconds
constexpr ULONGLONG kMarkerIsLost = 2'000;  // milliseconds
constexpr int kBrowserAttempts = 10;
constexpr int kBoxText = 0xFFFF;  // the platform's id for a message box's text

std::wstring TextOf(HWND window) {
    wchar_t text[1024] = {};
    GetWindowTextW(window, text, 1024);
    return text;
}

bool IsOfClass(HWND window, PCWSTR wanted) {
    wchar_t name[64] = {};
    GetClassNameW(window, name, 64);
    return std::wstring(name) == wanted;
}

std::vector<HWND> VisibleDialogsOfThread() {
    std::vector<HWND> windows;
    EnumThreadWindows(
        GetCurrentThreadId(),
        [](HWND window, LPARAM parameter) -> BOOL {
            if (IsWindowVisible(window) && IsOfClass(window, L"#32770"))
                reinterpret_cast<std::vector<HWND>*>(parameter)->push_back(window);
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&windows));
    return windows;
}

}  // namespace

LONG SheetRun::Show() {
    // It owns the sheet, so that the sheet has the keyboard focus when it opens.
    const UniqueWindow owner(CreateItemList(m_sheet.Session(), nullptr, {10, 10, 630, 430}));
    SetForegroundWindow(owner.Get());
    SetFocus(owner.Get());
    m_deadline = GetTickCount64() + kLongestRun;
    if (!m_steps.empty())
        SetTimer(owner.Get(), reinterpret_cast<UINT_PTR>(this), kTickMilliseconds,
                 [](HWND, UINT, UINT_PTR run, DWORD) { reinterpret_cast<SheetRun*>(run)->OnTick(); });
    const LONG result = m_sheet.Show(owner.Get());
    if (m_error)
        throw *m_error;
    return result;
}

void SheetRun::AddNext(const std::vector<SheetStep>& steps) {
    m_steps.insert(m_steps.begin(), steps.begin(), steps.end());
}

void SheetRun::OnTick() {
    if (!m_sheet.Window() || !IsWindow(m_sheet.Window()))
        return;
    if (!m_error && GetTickCount64() > m_deadline)
        m_error = HostError{L"the sheet takes too long: cancelled"};
    // While a step waits in a box, ticks arrive inside it.
    if (AnswerDialogs() || m_inStep || !Settled())
        return;
    m_inStep = true;
    try {
        RunNextStep();
    } catch (const HostError& error) {
        m_error = error;
    }
    m_inStep = false;
    m_marker.reset();
}

void SheetRun::RunNextStep() {
    if (m_error || m_steps.empty()) {
        m_user.Cancel();
        return;
    }
    const SheetStep step = std::move(m_steps.front());
    m_steps.pop_front();
    step(m_user);
}

// Keys that the plug-in or a step pressed are still on their way when they return. A marker behind them tells
// when the last one has arrived; as what they did may have had others pressed, only a marker that found
// nothing moving counts.
bool SheetRun::Settled() {
    const ULONGLONG now = GetTickCount64();
    const Rest rest = {KeyQueue::CtrlTabs(), m_sheet.CurrentPage()};
    if (m_marker && KeyQueue::LatestMarker() >= m_marker->number) {
        if (m_marker->rest == rest)
            return true;
    } else if (m_marker && now - m_marker->pressed < kMarkerIsLost) {
        return false;
    } else if (m_marker) {
        SetForegroundWindow(m_sheet.Window());  // another window has the keyboard
    }
    m_marker = Marker{KeyQueue::PressMarker(), now, rest};
    return false;
}

// True while something other than a sheet is in front of it.
bool SheetRun::AnswerDialogs() {
    std::vector<HWND> waiting = VisibleDialogsOfThread();
    std::erase_if(waiting, [](HWND dialog) {
        return std::ranges::find(t_sheets, dialog, &HostSheet::Window) != t_sheets.end();
    });
    for (const HWND dialog : waiting) {
        if (std::ranges::find(m_answered, dialog) != m_answered.end())
            continue;
        m_answered.push_back(dialog);
        if (onBox)
            onBox(dialog);
        const std::vector<HWND> controls = Descendants(dialog);
        const auto tree =
            std::ranges::find_if(controls, [](HWND control) { return IsOfClass(control, WC_TREEVIEWW); });
        if (tree != controls.end())
            AnswerBrowser(dialog, *tree);
        else
            AnswerBox(dialog);
    }
    if (waiting.empty())
        m_answered.clear();
    return !waiting.empty();
}

void SheetRun::AnswerBox(HWND box) {
    m_boxes.push_back({TextOf(box), TextOf(GetDlgItem(box, kBoxText)), GetWindow(box, GW_OWNER)});
    m_sheet.Note(Format(L"box: \"%ls\": %ls", m_boxes.back().caption.c_str(), m_boxes.back().text.c_str()));
    PostMessageW(box, WM_COMMAND, GetDlgItem(box, IDOK) ? IDOK : IDCANCEL, 0);
}

// The browser fills its tree while it looks for the folder; the first time it may come too early and select
// nothing.
void SheetRun::AnswerBrowser(HWND browser, HWND tree) {
    std::wstring folder;
    if (!m_folders.empty()) {
        folder = m_folders.front();
        m_folders.pop_front();
        bool found = false;
        for (int attempt = 0; !found && attempt < kBrowserAttempts; ++attempt) {
            SendMessageW(browser, BFFM_SETSELECTIONW, TRUE, reinterpret_cast<LPARAM>(folder.c_str()));
            found = TreeView_GetSelection(tree) != nullptr;
        }
        if (!found)
            m_error = HostError{L"the folder browser does not find " + folder};
    }
    m_sheet.Note(L"folder browser: " + (folder.empty() ? L"cancelled" : folder));
    PostMessageW(browser, WM_COMMAND, folder.empty() ? IDCANCEL : IDOK, 0);
}

}  // namespace driverhost

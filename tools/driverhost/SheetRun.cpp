#include "tools/driverhost/SheetRun.h"

#include <commctrl.h>
#include <shlobj.h>

#include <algorithm>
#include <iterator>

#include "tools/driverhost/KeyQueue.h"
#include "tools/driverhost/Text.h"
#include "tools/driverhost/TreeWindow.h"

namespace driverhost {

namespace {

constexpr UINT kTickMilliseconds = 20;
constexpr ULONGLONG kMarkerIsLost = 2000;  // milliseconds
constexpr int kBrowserAttempts = 10;
constexpr int kBoxText = 0xFFFF;  // the platform's id for a message box's text

thread_local std::vector<SheetRun*> t_runs;  // the open sheets, the latest behind

bool IsDialog(HWND window) {
    wchar_t name[16] = {};
    GetClassNameW(window, name, 16);
    return wcscmp(name, L"#32770") == 0;
}

std::wstring TextOf(HWND window) {
    wchar_t text[1024] = {};
    GetWindowTextW(window, text, 1024);
    return text;
}

HWND FindDescendant(HWND window, PCWSTR windowClass) {
    struct Search {
        PCWSTR name;
        HWND found;
    } search = {windowClass, nullptr};
    EnumChildWindows(
        window,
        [](HWND child, LPARAM parameter) -> BOOL {
            auto& wanted = *reinterpret_cast<Search*>(parameter);
            wchar_t name[64] = {};
            GetClassNameW(child, name, 64);
            if (wcscmp(name, wanted.name) == 0)
                wanted.found = child;
            return !wanted.found;
        },
        reinterpret_cast<LPARAM>(&search));
    return search.found;
}

std::vector<HWND> VisibleDialogsOfThread() {
    std::vector<HWND> windows;
    EnumThreadWindows(
        GetCurrentThreadId(),
        [](HWND window, LPARAM parameter) -> BOOL {
            if (IsWindowVisible(window) && IsDialog(window))
                reinterpret_cast<std::vector<HWND>*>(parameter)->push_back(window);
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&windows));
    return windows;
}

}  // namespace

LONG SheetRun::Show() {
    const bool scripted = !m_steps.empty();
    TreeWindow owner(m_sheet.Session());
    t_runs.push_back(this);
    if (scripted) {
        m_deadline = GetTickCount64() + limitMilliseconds;
        m_timer = SetTimer(nullptr, 0, kTickMilliseconds, Tick);
    }
    const auto stop = [&] {
        if (scripted)
            KillTimer(nullptr, m_timer);
        std::erase(t_runs, this);
    };
    LONG result = CPSUI_CANCEL;
    try {
        result = m_sheet.Show(owner.Window());
    } catch (...) {
        stop();
        throw;
    }
    stop();
    if (m_error)
        throw *m_error;
    return result;
}

void SheetRun::AddNext(std::vector<SheetStep> steps) {
    m_steps.insert(m_steps.begin(), std::make_move_iterator(steps.begin()),
                   std::make_move_iterator(steps.end()));
}

void SheetRun::Wait(DWORD milliseconds) {
    m_notBefore = GetTickCount64() + milliseconds;
}

void CALLBACK SheetRun::Tick(HWND, UINT, UINT_PTR timer, DWORD) {
    const auto run = std::ranges::find(t_runs, timer, &SheetRun::m_timer);
    if (run != t_runs.end())
        (*run)->OnTick();
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
            return now >= m_notBefore;
    } else if (m_marker && now - m_marker->pressed < kMarkerIsLost) {
        return false;
    } else if (m_marker) {
        SetForegroundWindow(m_sheet.Window());  // another window has the keyboard
    }
    m_marker = Marker{KeyQueue::PressMarker(), now, rest};
    return false;
}

// True while something other than the sheet is in front of it.
bool SheetRun::AnswerDialogs() {
    bool waiting = false;
    for (const HWND dialog : VisibleDialogsOfThread()) {
        if (std::ranges::any_of(t_runs, [&](SheetRun* run) { return run->m_sheet.Window() == dialog; }))
            continue;
        waiting = true;
        if (std::find(m_answered.begin(), m_answered.end(), dialog) != m_answered.end())
            continue;
        m_answered.push_back(dialog);
        if (onBox)
            onBox(dialog);
        if (FindDescendant(dialog, WC_TREEVIEWW))
            AnswerBrowser(dialog);
        else
            AnswerBox(dialog);
    }
    if (!waiting)
        m_answered.clear();
    return waiting;
}

void SheetRun::AnswerBox(HWND box) {
    SeenBox seen = {TextOf(box), TextOf(GetDlgItem(box, kBoxText)), GetWindow(box, GW_OWNER)};
    m_sheet.Note(Format(L"box: \"%ls\": %ls", seen.caption.c_str(), seen.text.c_str()));
    m_boxes.push_back(std::move(seen));
    int button = IDOK;
    if (!m_boxAnswers.empty()) {
        button = m_boxAnswers.front();
        m_boxAnswers.pop_front();
    } else if (!GetDlgItem(box, IDOK)) {
        button = IDCANCEL;
    }
    PostMessageW(box, WM_COMMAND, static_cast<WPARAM>(button), 0);
}

// The browser fills its tree while it looks for the folder; the first time it may come too early and select
// nothing.
bool SheetRun::SelectInBrowser(HWND browser, const std::wstring& folder) {
    const HWND tree = FindDescendant(browser, WC_TREEVIEWW);
    for (int attempt = 0; attempt < kBrowserAttempts; ++attempt) {
        SendMessageW(browser, BFFM_SETSELECTIONW, TRUE, reinterpret_cast<LPARAM>(folder.c_str()));
        if (SendMessageW(tree, TVM_GETNEXTITEM, TVGN_CARET, 0) != 0)
            return true;
    }
    return false;
}

void SheetRun::AnswerBrowser(HWND browser) {
    std::wstring folder;
    if (!m_folders.empty()) {
        folder = m_folders.front();
        m_folders.pop_front();
    }
    m_sheet.Note(folder.empty() ? std::wstring(L"folder browser: cancelled") : L"folder browser: " + folder);
    if (!folder.empty() && !SelectInBrowser(browser, folder))
        m_error = HostError{L"the folder browser does not find " + folder};
    PostMessageW(browser, WM_COMMAND, folder.empty() ? IDCANCEL : IDOK, 0);
}

}  // namespace driverhost

#include "tests/support/MessageBoxes.h"

#include <algorithm>
#include <cwchar>

namespace kzp::test {

namespace {

constexpr int kMessageBoxText = 0xFFFF;

MessageBoxes* g_catcher = nullptr;

std::wstring TextOf(HWND window) {
    wchar_t text[1024] = {};
    GetWindowTextW(window, text, 1024);
    return text;
}

}  // namespace

MessageBoxes::MessageBoxes(int answer) : m_answer(answer) {
    g_catcher = this;
    m_hook = SetWindowsHookExW(WH_CBT, Hook, nullptr, GetCurrentThreadId());
}

MessageBoxes::~MessageBoxes() {
    UnhookWindowsHookEx(m_hook);
    g_catcher = nullptr;
}

LRESULT CALLBACK MessageBoxes::Hook(int code, WPARAM wParam, LPARAM lParam) {
    if (code == HCBT_ACTIVATE && g_catcher) {
        const HWND window = reinterpret_cast<HWND>(wParam);
        wchar_t name[32] = {};
        GetClassNameW(window, name, 32);
        if (std::wcscmp(name, L"#32770") == 0 && GetDlgItem(window, kMessageBoxText))
            g_catcher->Catch(window);
    }
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

void MessageBoxes::Catch(HWND box) {
    // A box may be activated more than once before it goes.
    if (std::find(m_seen.begin(), m_seen.end(), box) != m_seen.end())
        return;
    m_seen.push_back(box);
    m_caught.push_back({TextOf(box), TextOf(GetDlgItem(box, kMessageBoxText)), GetWindow(box, GW_OWNER)});
    PostMessageW(box, WM_COMMAND, static_cast<WPARAM>(m_answer), 0);
}

}  // namespace kzp::test

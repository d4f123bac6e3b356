// Presses OK in every message box of this thread while the object lives, and counts them.
#pragma once

#include <windows.h>

#include <set>

namespace kzp::test {

class MessageBoxes {
  public:
    MessageBoxes() : m_hook(SetWindowsHookExW(WH_CBT, Hook, nullptr, GetCurrentThreadId())) {
        s_boxes.clear();
    }
    ~MessageBoxes() { UnhookWindowsHookEx(m_hook); }
    MessageBoxes(const MessageBoxes&) = delete;
    MessageBoxes& operator=(const MessageBoxes&) = delete;

    static size_t Count() { return s_boxes.size(); }

  private:
    static LRESULT CALLBACK Hook(int code, WPARAM wParam, LPARAM lParam) {
        constexpr int kText = 0xFFFF;
        const auto window = reinterpret_cast<HWND>(wParam);
        // A box may be activated more than once before it goes.
        if (code == HCBT_ACTIVATE && GetDlgItem(window, kText) && s_boxes.insert(window).second)
            PostMessageW(window, WM_COMMAND, IDOK, 0);
        return CallNextHookEx(nullptr, code, wParam, lParam);
    }

    static inline std::set<HWND> s_boxes;
    HHOOK m_hook;
};

}  // namespace kzp::test

// What a program with a user interface has before a plug-in comes: a window on the screen.
#pragma once

#include <windows.h>

namespace kzp::bench {

inline void HandlePendingMessages() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

class ShownWindow {
  public:
    ShownWindow()
        : m_window(CreateWindowExW(0, L"STATIC", L"Application", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 20, 20,
                                   600, 480, nullptr, nullptr, nullptr, nullptr)) {
        HandlePendingMessages();
    }
    ~ShownWindow() {
        DestroyWindow(m_window);
        HandlePendingMessages();
    }
    ShownWindow(const ShownWindow&) = delete;
    ShownWindow& operator=(const ShownWindow&) = delete;

    HWND Get() const { return m_window; }

  private:
    HWND m_window;
};

}  // namespace kzp::bench

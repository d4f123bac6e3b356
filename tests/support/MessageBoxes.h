// Message boxes of this thread, caught and answered while the object lives.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace kzp::test {

struct CaughtBox {
    std::wstring caption;
    std::wstring text;
    HWND owner;
};

class MessageBoxes {
  public:
    // `answer` is the button that is pressed.
    explicit MessageBoxes(int answer = IDOK);
    ~MessageBoxes();
    MessageBoxes(const MessageBoxes&) = delete;
    MessageBoxes& operator=(const MessageBoxes&) = delete;

    const std::vector<CaughtBox>& Caught() const { return m_caught; }

  private:
    static LRESULT CALLBACK Hook(int code, WPARAM wParam, LPARAM lParam);
    void Catch(HWND box);

    int m_answer;
    HHOOK m_hook = nullptr;
    std::vector<HWND> m_seen;
    std::vector<CaughtBox> m_caught;
};

}  // namespace kzp::test

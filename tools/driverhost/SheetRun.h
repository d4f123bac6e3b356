// Shows a sheet and plays a list of steps in it, from the sheet's own message loop, as a person would: each
// step once the tabs have come to rest. Message boxes and folder browsers that appear meanwhile are noted and
// answered, so that nothing waits for a person.
#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "tools/driverhost/SheetUser.h"
#include "tools/driverhost/Text.h"

namespace driverhost {

using SheetStep = std::function<void(SheetUser&)>;

struct SeenBox {
    std::wstring caption;
    std::wstring text;
    HWND owner;
};

class SheetRun {
  public:
    // Without steps the sheet is left to the person at the desktop, and boxes are not answered.
    explicit SheetRun(HostSheet& sheet) : m_sheet(sheet), m_user(sheet) {}
    void Add(SheetStep step) { m_steps.push_back(std::move(step)); }

    // CPSUI_OK or CPSUI_CANCEL. A sheet that is still open behind the last step is cancelled. The first
    // HostError of a step cancels the sheet and is thrown from here.
    LONG Show();

    // For steps.
    void AddNext(std::vector<SheetStep> steps);  // before those that are still to come
    void Wait(DWORD milliseconds);
    void AnswerNextBox(int button) { m_boxAnswers.push_back(button); }  // else OK
    void AnswerNextBrowser(std::wstring path) {
        m_folders.push_back(std::move(path));
    }  // empty: Cancel; else Cancel

    const std::vector<SeenBox>& Boxes() const { return m_boxes; }
    // Called while a box or browser is still on the screen.
    std::function<void(HWND box)> onBox;
    DWORD limitMilliseconds = 60'000;  // a run that takes longer ends with HostError

  private:
    struct Rest {
        LONG ctrlTabs;
        int page;
        bool operator==(const Rest&) const = default;
    };
    struct Marker {
        LONG number;
        ULONGLONG pressed;  // when
        Rest rest;
    };
    static void CALLBACK Tick(HWND, UINT, UINT_PTR timer, DWORD);
    void OnTick();
    bool AnswerDialogs();
    void AnswerBox(HWND box);
    void AnswerBrowser(HWND browser);
    static bool SelectInBrowser(HWND browser, const std::wstring& folder);
    bool Settled();
    void RunNextStep();

    HostSheet& m_sheet;
    SheetUser m_user;
    std::deque<SheetStep> m_steps;
    std::deque<int> m_boxAnswers;
    std::deque<std::wstring> m_folders;
    std::vector<SeenBox> m_boxes;
    std::vector<HWND> m_answered;
    std::optional<HostError> m_error;
    bool m_inStep = false;
    UINT_PTR m_timer = 0;
    std::optional<Marker> m_marker;
    ULONGLONG m_notBefore = 0;
    ULONGLONG m_deadline = 0;
};

}  // namespace driverhost

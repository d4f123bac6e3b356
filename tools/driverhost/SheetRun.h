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

struct WindowTraits {
    using Type = HWND;
    static Type Empty() { return nullptr; }
    static void Close(Type window) { DestroyWindow(window); }
};
using UniqueWindow = kzp::UniqueHandle<WindowTraits>;

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
    // HostError of a step cancels the sheet and is thrown from here; so does a run that takes over a minute.
    LONG Show();

    // For steps.
    void AddNext(const std::vector<SheetStep>& steps);  // before those that are still to come
    void AnswerNextBrowser(const std::wstring& path) { m_folders.push_back(path); }  // else Cancel

    const std::vector<SeenBox>& Boxes() const { return m_boxes; }
    // Called while a box or browser is still on the screen.
    std::function<void(HWND box)> onBox;

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
    void OnTick();
    bool AnswerDialogs();
    void AnswerBox(HWND box);
    void AnswerBrowser(HWND browser, HWND tree);
    bool Settled();
    void RunNextStep();

    HostSheet& m_sheet;
    SheetUser m_user;
    std::deque<SheetStep> m_steps;
    std::deque<std::wstring> m_folders;
    std::vector<SeenBox> m_boxes;
    std::vector<HWND> m_answered;
    std::optional<HostError> m_error;
    bool m_inStep = false;
    std::optional<Marker> m_marker;
    ULONGLONG m_deadline = 0;
};

}  // namespace driverhost

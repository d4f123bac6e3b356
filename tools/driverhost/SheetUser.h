// The hands of a person at the open sheet: what is done here reaches the controls as it does from mouse and
// keyboard. A control that cannot be seen or is disabled cannot be used: HostError, as for one that does not
// exist.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "tools/driverhost/HostSheet.h"

namespace driverhost {

// Every window below, however deep.
std::vector<HWND> Descendants(HWND window);

class SheetUser {
  public:
    explicit SheetUser(HostSheet& sheet) : m_sheet(sheet) {}
    HostSheet& Sheet() { return m_sheet; }

    void ClickTab(int index);  // counting from 0

    void Type(int id, const std::wstring& text);     // over what is there, one character after another
    void SetText(int id, const std::wstring& text);  // at once, as from the clipboard
    void Click(int id);
    void Select(int id, const std::wstring& text);  // an entry of a combo box
    void SelectIndex(int id, int index);
    void Spin(int id, bool up, int times = 1);                  // clicks half of an up-down control
    void CheckItem(int id, const std::wstring& text, bool on);  // an entry of a check list

    void Ok() { Press(IDOK); }
    void Cancel() { Press(IDCANCEL); }
    void Apply();  // HostError while the button is disabled
    bool ApplyEnabled() const;

    // Looking. On the shown page first, then on any page that was created.
    HWND Find(int id) const;          // null when there is none
    std::wstring Text(int id) const;  // of a combo box: the selected entry
    bool Checked(int id) const;
    bool Visible(int id) const;
    bool Enabled(int id) const;

  private:
    HWND Existing(int id) const;
    HWND Usable(int id) const;
    void Press(int button);

    HostSheet& m_sheet;
};

}  // namespace driverhost

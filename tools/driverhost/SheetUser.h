// The hands of a person at the open sheet: what is done here reaches the controls as it does from mouse and
// keyboard. A control that cannot be seen or is disabled cannot be used: HostError, as for one that does not
// exist.
#pragma once

#include <windows.h>

#include <string>

#include "tools/driverhost/HostSheet.h"

namespace driverhost {

class SheetUser {
  public:
    explicit SheetUser(HostSheet& sheet) : m_sheet(sheet) {}
    HostSheet& Sheet() { return m_sheet; }

    void ClickTab(int index);                   // counting from 0
    void ClickTab(const std::wstring& title);   // the tab's text
    void PressCtrlTab(bool backwards = false);  // synthesised; takes effect when the sheet reads its messages
    void PressKey(BYTE virtualKey);

    void Type(int id, const std::wstring& text);     // over what is there, one character after another
    void SetText(int id, const std::wstring& text);  // at once, as from the clipboard
    void Click(int id);
    void Check(int id, bool on);                    // clicks a box when it is not as wanted
    void Select(int id, const std::wstring& text);  // an entry of a combo box
    void SelectIndex(int id, int index);
    void Spin(int id, bool up, int times = 1);                  // clicks half of an up-down control
    void CheckItem(int id, const std::wstring& text, bool on);  // an entry of a check list

    // Picks an option on the driver's page: sets the selection and tells the plug-in's callback.
    void SelectDriverOption(const std::string& keyword, LONG selection);

    void Ok();
    void Cancel();
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

    HostSheet& m_sheet;
};

}  // namespace driverhost

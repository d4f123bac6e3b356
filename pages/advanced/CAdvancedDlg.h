// The fonts and colour dialog that stands in the driver's own page: which fonts travel with a document, and
// two choices of colour management. Choices go straight into the driver's items; the chosen fonts are stored
// when the sheet commits.
#pragma once

#include <windows.h>

#include "pages/advanced/CCheckListViewCtrl.h"
#include "pages/advanced/FontList.h"

namespace kzp {

// One object per dialog window, which owns it: it comes with Create and goes with the window.
class CAdvancedDlg {
  public:
    // Creates the dialog, hidden, as a child of the driver's page; null when that fails.
    static HWND Create(HWND driverPage);

    // The object behind a dialog window; null for a window that is none or is gone.
    static CAdvancedDlg* Of(HWND window);

    // Stores the checked fonts in the list's order.
    void SaveFontList() const;

  private:
    CAdvancedDlg() = default;

    static INT_PTR CALLBACK Procedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
    INT_PTR OnMessage(UINT message, WPARAM wParam, LPARAM lParam);

    void OnInitDialog();
    void FillColourLists();
    void FillFontList();
    void OnDestroy();

    bool OnCommand(int control, UINT code);
    void TakeChoice(FontChoice choice);
    void OnIntentChosen();
    void OnMethodChosen();
    LONG Selection(int list) const;
    void EnableApply() const;

    HWND m_window = nullptr;
    CCheckListViewCtrl m_fonts;
};

// Stores the fonts of the open dialog. Nothing happens, and what is stored stays, when there is none.
void SaveFontList();

}  // namespace kzp

// The fonts and colour dialog that stands in the driver's own page: which fonts travel with a document, and
// two choices of colour management. Choices go straight into the driver's items; the chosen fonts are stored
// when the sheet commits.
#pragma once

#include <windows.h>

#include <utility>

#include "pages/advanced/CCheckListViewCtrl.h"
#include "pages/advanced/FontList.h"
#include "settings/SheetState.h"

namespace kzp {

// One object per dialog window, which owns it: it comes with Create and goes with the window.
class CAdvancedDlg {
  public:
    // Creates the dialog, hidden, as a child of the page of the sheet's driver; null when that fails.
    static HWND Create(SheetState& sheet, HWND driverPage);

    // The object behind a dialog window; null for a window that is none or is gone.
    static CAdvancedDlg* Of(HWND window);

    // Stores the checked fonts in the list's order.
    void SaveFontList() const;

  private:
    explicit CAdvancedDlg(SheetUse sheet) : m_sheet(std::move(sheet)) {}

    static INT_PTR CALLBACK Procedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
    INT_PTR OnMessage(UINT message, WPARAM wParam, LPARAM lParam);

    void OnInitDialog();
    void SetPageTitle(LONG_PTR page, UINT text) const;
    void FillList(HWND list, UINT firstText, UINT count) const;
    void FillColourLists();
    void FillFontList();
    void OnDestroy();

    bool OnCommand(int control, UINT code);
    SheetState& Sheet() const { return *m_sheet.Get(); }
    POPTITEM ItemAt(DWORD position) const;
    void TakeChoice(FontChoice choice);
    void OnIntentChosen();
    void OnMethodChosen();
    LONG Selection(int list) const;
    void EnableApply() const;

    SheetUse m_sheet;
    HWND m_window = nullptr;
    CCheckListViewCtrl m_fonts;
};

// Stores the fonts of the sheet's dialog. Nothing happens, and what is stored stays, when there is none or
// when it could not be filled.
void SaveFontList(const SheetState& sheet);

}  // namespace kzp

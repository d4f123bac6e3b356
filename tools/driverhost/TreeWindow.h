// A window beside the sheet that shows the driver's items as they are now: the plug-in hides the driver's own
// page behind its fonts dialog. It owns the sheet, so that the sheet has the keyboard focus when it opens.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "tools/driverhost/DocumentSession.h"

namespace driverhost {

class TreeWindow {
  public:
    explicit TreeWindow(DocumentSession& session);
    ~TreeWindow();
    TreeWindow(const TreeWindow&) = delete;
    TreeWindow& operator=(const TreeWindow&) = delete;

    HWND Window() const { return m_window; }
    // Shows what changed since the last call; also runs by itself four times a second.
    void Refresh();

  private:
    using Row = std::vector<std::wstring>;
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    std::vector<Row> Rows() const;
    void AddColumns();

    DocumentSession& m_session;
    HWND m_window = nullptr;
    HWND m_list = nullptr;
    std::vector<Row> m_shown;
};

}  // namespace driverhost

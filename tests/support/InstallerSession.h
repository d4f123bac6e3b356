// A real installer handle without an installation: a small package, opened in this process.
#pragma once

#include <windows.h>

#include <msi.h>

#include <string>
#include <vector>

#include "tests/support/Files.h"

namespace kzp::test {

class InstallerSession {
  public:
    InstallerSession();
    ~InstallerSession();
    InstallerSession(const InstallerSession&) = delete;
    InstallerSession& operator=(const InstallerSession&) = delete;

    MSIHANDLE Handle() const { return m_package; }
    void SetActionData(const std::wstring& text) const;

    // The actions' lines that reached the log so far, from "INFO: " or "ERROR: " on.
    const std::vector<std::wstring>& Lines() const { return m_lines; }

  private:
    static INT CALLBACK Receive(void* session, UINT type, MSIHANDLE record);

    TemporaryFolder m_folder;
    MSIHANDLE m_package = 0;
    std::vector<std::wstring> m_lines;
};

}  // namespace kzp::test

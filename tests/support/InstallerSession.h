// A real installer handle without an installation: the package, opened in this process.
#pragma once

#include <windows.h>

#include <msi.h>

#include <string>

namespace kzp::test {

// The actions' lines that reach its log, from "INFO: " or "ERROR: " on, stand in the spooler's log: "log
// INFO: ...".
class InstallerSession {
  public:
    InstallerSession();
    ~InstallerSession();
    InstallerSession(const InstallerSession&) = delete;
    InstallerSession& operator=(const InstallerSession&) = delete;

    MSIHANDLE Handle() const { return m_package; }
    void SetActionData(const std::wstring& text) const;

  private:
    MSIHANDLE m_package = 0;
};

}  // namespace kzp::test

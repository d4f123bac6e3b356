// Files beside the test program, and folders that vanish with the test.
#pragma once

#include <windows.h>

#include <string>

#include "tools/driverhost/PlugIn.h"

namespace kzp::test {

// Full path of a file that stands beside this program.
inline std::wstring BesideExe(const std::wstring& name) {
    return driverhost::BesideProgram(name.c_str());
}

// A fresh folder; it and all that was put into it go with the object.
class TemporaryFolder {
  public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::wstring& Path() const { return m_path; }  // without a closing backslash
    std::wstring File(const std::wstring& name) const { return m_path + L"\\" + name; }

    // Copies a file that stands beside this program into the folder, under `as` when given; answers its new
    // path.
    std::wstring Take(const std::wstring& name, const std::wstring& as = {}) const;

    // A folder in it whose path has that many characters.
    std::wstring Deep(size_t length) const;

  private:
    std::wstring m_path;
};

std::wstring DocumentsFolder();  // as the shell spells it here
bool FileExists(const std::wstring& path);
void WriteFileText(const std::wstring& path, const std::string& text);

}  // namespace kzp::test

#include "tests/support/InstallerSession.h"

#include <gtest/gtest.h>
#include <msiquery.h>

#include <algorithm>

#include "tests/support/Files.h"
#include "tools/standins/spooler/SpoolerControl.h"

namespace kzp::test {

namespace {

INT CALLBACK Receive(void*, UINT type, MSIHANDLE record) {
    wchar_t text[1024] = {};
    DWORD length = 1024;
    if ((type & 0xFF000000) != INSTALLMESSAGE_INFO || MsiFormatRecordW(0, record, text, &length) != 0)
        return 0;
    // The platform puts "Info <code>." before a line that carries a code.
    const std::wstring line = text;
    const size_t start = std::min(line.find(L"INFO: "), line.find(L"ERROR: "));
    if (start != std::wstring::npos)
        standins::spooler::Note(L"log " + line.substr(start));
    return IDOK;
}

}  // namespace

InstallerSession::InstallerSession() {
    MsiSetInternalUI(INSTALLUILEVEL_NONE, nullptr);
    MsiSetExternalUIRecord(Receive, 0xFFFFFFFF, nullptr, nullptr);
    EXPECT_EQ(0u, MsiOpenPackageW(BesideExe(L"KZPWriter.msi").c_str(), &m_package));
}

InstallerSession::~InstallerSession() {
    MsiCloseHandle(m_package);
    MsiSetExternalUIRecord(nullptr, 0, nullptr, nullptr);
}

void InstallerSession::SetActionData(const std::wstring& text) const {
    ASSERT_EQ(0u, MsiSetPropertyW(m_package, L"CustomActionData", text.c_str()));
}

}  // namespace kzp::test

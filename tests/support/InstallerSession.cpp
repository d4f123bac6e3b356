#include "tests/support/InstallerSession.h"

#include <gtest/gtest.h>
#include <msiquery.h>
#include <wtypes.h>

#include "tools/standins/spooler/SpoolerControl.h"

namespace kzp::test {

namespace {

void Execute(MSIHANDLE database, const std::wstring& query) {
    MSIHANDLE view = 0;
    ASSERT_EQ(0u, MsiDatabaseOpenViewW(database, query.c_str(), &view));
    EXPECT_EQ(0u, MsiViewExecute(view, 0));
    MsiCloseHandle(view);
}

// The least that the platform opens as a package.
MSIHANDLE CreatePackage(const std::wstring& path) {
    MSIHANDLE database = 0;
    EXPECT_EQ(0u, MsiOpenDatabaseW(path.c_str(), MSIDBOPEN_CREATEDIRECT, &database));
    Execute(database,
            L"CREATE TABLE `Property` (`Property` CHAR(72) NOT NULL, `Value` CHAR(0) NOT NULL LOCALIZABLE "
            L"PRIMARY KEY `Property`)");
    const std::wstring insert = L"INSERT INTO `Property` (`Property`, `Value`) VALUES (";
    for (const wchar_t* const row : {
             L"'ProductCode', '{7B0C2A94-51D3-4E86-9F17-3C6A08E4B25D}')",
             L"'ProductName', 'Actions under test')",
             L"'ProductLanguage', '1033')",
             L"'ProductVersion', '1.0.0')",
             L"'Manufacturer', 'Brimlake')",
         })
        Execute(database, insert + row);
    MSIHANDLE summary = 0;
    EXPECT_EQ(0u, MsiGetSummaryInformationW(database, nullptr, 4, &summary));
    const auto set = [&](UINT property, UINT type, int number, const wchar_t* text) {
        MsiSummaryInfoSetPropertyW(summary, property, type, number, nullptr, text);
    };
    set(7, VT_LPSTR, 0, L"x64;1033");
    set(9, VT_LPSTR, 0, L"{0D9B6C1E-8A47-4F25-B3E0-6271A5C84F93}");
    set(14, VT_I4, 200, nullptr);
    set(15, VT_I4, 0, nullptr);
    MsiSummaryInfoPersist(summary);
    MsiCloseHandle(summary);
    MsiDatabaseCommit(database);
    return database;
}

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
    const MSIHANDLE database = CreatePackage(m_folder.File(L"actions.msi"));
    EXPECT_EQ(0u, MsiOpenPackageW((L"#" + std::to_wstring(database)).c_str(), &m_package));
    MsiCloseHandle(database);
}

InstallerSession::~InstallerSession() {
    MsiCloseHandle(m_package);
    MsiSetExternalUIRecord(nullptr, 0, nullptr, nullptr);
}

void InstallerSession::SetActionData(const std::wstring& text) const {
    ASSERT_EQ(0u, MsiSetPropertyW(m_package, L"CustomActionData", text.c_str()));
}

}  // namespace kzp::test

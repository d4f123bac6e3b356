// The per-user settings against a real registry: what a fresh user gets, what is stored to the byte, and what
// becomes of values that somebody else wrote.
#include "settings/SettingsStore.h"

#include <gtest/gtest.h>

#include "tests/support/ImportPatch.h"
#include "tests/support/ScratchRegistry.h"
#include "tools/driverhost/State.h"

namespace kzp::test {
namespace {

struct Settings : testing::Test {
    std::wstring Text(const wchar_t* name, int answer = 1) {
        std::wstring text = L"poison";
        EXPECT_EQ(answer, ReadStringSetting(name, text));
        return text;
    }
    DWORD Number(const wchar_t* name, int answer = 1) {
        DWORD number = 77;
        EXPECT_EQ(answer, ReadDwordSetting(name, number));
        return number;
    }
    // Type, byte count and contents in the user's hive.
    std::wstring Stored(const wchar_t* name) {
        return driverhost::SettingsState()[L"settings: " + std::wstring(name)];
    }
    void ExpectNothingWorks(const wchar_t* name) {
        EXPECT_EQ(L"", Text(name, 0));
        EXPECT_EQ(0u, Number(name, 0));
        DWORD bytes = 0;
        EXPECT_EQ(0, ReadBinarySetting(name, nullptr, bytes));
        EXPECT_EQ(0, WriteStringSetting(name, L"x"));
        EXPECT_EQ(0, WriteDwordSetting(name, 1));
        EXPECT_EQ(0, WriteBinarySetting(name, &bytes, 4));
    }

    ScratchRegistry registry;
};

TEST_F(Settings, AFreshUserGetsTheDefaults) {
    EXPECT_EQ(L"", Text(kLaunchView)) << "the key itself is new";
    EXPECT_EQ(0u, Number(kOutputType));
    EXPECT_EQ(L"REG_SZ, 0 bytes: \"\"", Stored(L"LaunchKZPView"));
    EXPECT_EQ(L"REG_DWORD, 4 bytes: 0", Stored(L"OutputType"));
}

TEST_F(Settings, TextsAreStoredWithHalfATerminatorAndReadBack) {
    for (const size_t length : {0u, 1023u}) {
        const std::wstring text(length, L'x');
        EXPECT_EQ(1, WriteStringSetting(kDefaultDir, text));
        EXPECT_EQ(2 * length + 1, ReadValue(HKEY_CURRENT_USER, kSettingsKey, kDefaultDir)->bytes.size());
        EXPECT_EQ(text, Text(kDefaultDir));
    }
}

REGSAM g_rights = 0;

LSTATUS WINAPI NoteRights(HKEY, LPCWSTR, DWORD, LPWSTR, DWORD, REGSAM rights, LPSECURITY_ATTRIBUTES, PHKEY,
                          LPDWORD) {
    g_rights |= rights;
    return ERROR_ACCESS_DENIED;
}

TEST_F(Settings, RefuseNamesOutsideTheKeyAndFailQuietlyWithoutRights) {
    for (const wchar_t* name : {L"", L"A\\B"})
        ExpectNothingWorks(name);
    EXPECT_FALSE(KeyExists(HKEY_CURRENT_USER, kSettingsKey)) << "nothing was touched";
    const ImportPatch patch(GetModuleHandleW(nullptr), "RegCreateKeyExW", AddressOf(NoteRights));
    ExpectNothingWorks(kDefaultDir);
    EXPECT_EQ(REGSAM{KEY_READ | KEY_WRITE}, g_rights);
}

TEST_F(Settings, ValuesOfForeignTypeAndLengthStayInsideTheBuffers) {
    const auto store = [](const wchar_t* name, DWORD type, const void* data, size_t bytes) {
        WriteValue(HKEY_CURRENT_USER, kSettingsKey, name, type, data, bytes);
    };
    const std::wstring full(1024, L'x');  // exactly the buffer's size, without a terminator
    store(kPathDirs, REG_BINARY, full.data(), 2048);
    EXPECT_EQ(full.substr(1), Text(kPathDirs));
    store(kPathDirs, REG_SZ, (full + L"y").data(), 2050);
    EXPECT_EQ(L"", Text(kPathDirs));
    EXPECT_EQ(L"REG_SZ, 0 bytes: \"\"", Stored(L"PathDirs")) << "what is longer is replaced by the default";

    const BYTE bytes[] = {1, 2, 3, 4, 5};
    store(kOutputType, REG_BINARY, bytes, 2);
    EXPECT_EQ(0x0201u, Number(kOutputType));

    BYTE buffer[4] = {9, 9, 9, 9};
    DWORD count = 2;
    store(kFontList, REG_BINARY, bytes, 5);
    EXPECT_EQ(1, ReadBinarySetting(kFontList, buffer, count));
    EXPECT_EQ(0u, count);
    EXPECT_EQ(9, buffer[2]) << "never written behind the count";
    EXPECT_EQ(L"REG_BINARY, 0 bytes: 0 fonts", Stored(L"FONTLIST"));
}

TEST_F(Settings, InstallDirAloneIsReadFromTheMachine) {
    for (const wchar_t* const name : {L"InstallDir", L"OtherDir"})
        WriteText(HKEY_LOCAL_MACHINE, kSettingsKey, name, L"C:\\KZP");
    EXPECT_EQ(1, WriteStringSetting(kInstallDir, L"D:\\Mine")) << "into the user's hive";
    EXPECT_EQ(L"C:\\KZP", Text(kInstallDir));
    EXPECT_EQ(L"", Text(L"OtherDir"));
    EXPECT_EQ(L"D:\\Mine", Text(L"INSTALLDIR")) << "the name is compared with its case";
}

}  // namespace
}  // namespace kzp::test

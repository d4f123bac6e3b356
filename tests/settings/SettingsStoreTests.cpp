// The per-user settings against a real registry: what a fresh user gets, what is stored to the byte, and what
// becomes of values that somebody else wrote.
#include "settings/SettingsStore.h"

#include <gtest/gtest.h>

#include <vector>

#include "tests/support/ImportPatch.h"
#include "tests/support/ScratchRegistry.h"

namespace kzp::test {
namespace {

struct Settings : testing::Test {
    void Store(const wchar_t* name, DWORD type, const void* data, size_t bytes) {
        WriteValue(HKEY_CURRENT_USER, kSettingsKey, name, type, data, bytes);
    }
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
    void ExpectStored(const wchar_t* name, DWORD type, size_t bytes) {
        const auto value = ReadValue(HKEY_CURRENT_USER, kSettingsKey, name);
        ASSERT_TRUE(value);
        EXPECT_EQ(type, value->type);
        EXPECT_EQ(std::vector<BYTE>(bytes), value->bytes);
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

TEST_F(Settings, AFreshUserGetsEveryValueWithItsDefault) {
    EXPECT_EQ(L"", Text(kLaunchView)) << "the key itself is new";
    EXPECT_EQ(0u, Number(kOutputType));
    BYTE bytes[64] = {};
    DWORD count = sizeof bytes;
    EXPECT_EQ(1, ReadBinarySetting(kFontList, bytes, count));
    EXPECT_EQ(0u, count);
    ExpectStored(L"LaunchKZPView", REG_SZ, 0);
    ExpectStored(L"OutputType", REG_DWORD, 4);
    ExpectStored(L"FONTLIST", REG_BINARY, 0);
}

TEST_F(Settings, TextsAreStoredWithHalfATerminatorAndReadBack) {
    for (const size_t length : {0u, 1u, 6u, 13u, 500u, 1023u}) {
        const std::wstring text(length, L'x');
        EXPECT_EQ(1, WriteStringSetting(kDefaultDir, text));
        const auto stored = ReadValue(HKEY_CURRENT_USER, kSettingsKey, L"DefaultDir");
        ASSERT_TRUE(stored);
        EXPECT_EQ(REG_SZ, stored->type);
        EXPECT_EQ(2 * length + 1, stored->bytes.size()) << length;
        EXPECT_EQ(text, Text(kDefaultDir));
    }
}

TEST_F(Settings, NamesThatReachOutOfTheKeyAreRefused) {
    for (const wchar_t* name : {L"", L"A\\B", L"\\"})
        ExpectNothingWorks(name);
    EXPECT_FALSE(KeyExists(HKEY_CURRENT_USER, kSettingsKey)) << "nothing was touched";
}

REGSAM g_rights = 0;

LSTATUS WINAPI NoteRights(HKEY, LPCWSTR, DWORD, LPWSTR, DWORD, REGSAM rights, LPSECURITY_ATTRIBUTES, PHKEY,
                          LPDWORD) {
    g_rights |= rights;
    return ERROR_ACCESS_DENIED;
}

TEST_F(Settings, AskForNoMoreThanReadingAndWritingAndFailQuietlyWithoutThem) {
    const ImportPatch patch(GetModuleHandleW(nullptr), "RegCreateKeyExW", AddressOf(NoteRights));
    ExpectNothingWorks(kDefaultDir);
    EXPECT_EQ(REGSAM{KEY_READ | KEY_WRITE}, g_rights);
}

TEST_F(Settings, ValuesOfForeignTypeAndLengthStayInsideTheBuffers) {
    const BYTE bytes[] = {1, 2, 3, 4, 5};
    const DWORD ab = 0x00420041;
    const std::wstring full(1024, L'x');  // exactly the buffer's size, without a terminator
    const std::wstring longer(1025, L'y');
    const auto expectText = [&](const std::wstring& text, DWORD type, const void* data, size_t size) {
        Store(kPathDirs, type, data, size);
        EXPECT_EQ(text, Text(kPathDirs));
    };
    expectText(full.substr(1), REG_BINARY, full.data(), 2048);
    expectText(L"AB", REG_DWORD, &ab, 4);
    expectText(L"ABC", REG_BINARY, L"ABC", 5);
    expectText(L"", REG_SZ, longer.data(), 2050);
    ExpectStored(L"PathDirs", REG_SZ, 0);  // what is longer is replaced by the default

    Store(kOutputType, REG_BINARY, bytes, 2);
    EXPECT_EQ(0x0201u, Number(kOutputType));
    Store(kOutputType, REG_BINARY, bytes, 5);
    EXPECT_EQ(0u, Number(kOutputType));
    ExpectStored(L"OutputType", REG_DWORD, 4);

    BYTE buffer[4] = {9, 9, 9, 9};
    DWORD count = 2;
    Store(kFontList, REG_BINARY, bytes, 5);
    EXPECT_EQ(1, ReadBinarySetting(kFontList, buffer, count));
    EXPECT_EQ(0u, count);
    EXPECT_EQ(9, buffer[2]) << "never written behind the count";
}

TEST_F(Settings, InstallDirAloneIsReadFromTheMachine) {
    for (const wchar_t* const name : {L"InstallDir", L"OtherDir"})
        WriteText(HKEY_LOCAL_MACHINE, kSettingsKey, name, L"C:\\Program Files\\KZP");
    EXPECT_EQ(L"C:\\Program Files\\KZP", Text(kInstallDir));
    EXPECT_EQ(L"", Text(L"OtherDir"));
    EXPECT_EQ(L"", Text(L"INSTALLDIR")) << "the name is compared with its case";
    EXPECT_EQ(1, WriteStringSetting(kInstallDir, L"D:\\Mine")) << "writes go to the user's hive";
    EXPECT_EQ(L"D:\\Mine", ReadValue(HKEY_CURRENT_USER, kSettingsKey, L"InstallDir")->Text());
    EXPECT_EQ(L"C:\\Program Files\\KZP", Text(kInstallDir));
}

TEST(YesOrNo, IsComparedOverTheStoredLength) {
    for (const wchar_t* yes : {L"", L"y", L"Ye", L"YES"})
        EXPECT_TRUE(IsPrefixOfYes(yes)) << yes;
    for (const wchar_t* other : {L"YESS", L"0", L" yes"})
        EXPECT_FALSE(IsPrefixOfYes(other)) << other;
    for (const wchar_t* no : {L"n", L"No"})
        EXPECT_TRUE(IsPrefixOfNo(no) && !IsPrefixOfYes(no)) << no;
    EXPECT_FALSE(IsPrefixOfNo(L"nope"));
}

}  // namespace
}  // namespace kzp::test

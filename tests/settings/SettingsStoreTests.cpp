// The per-user settings against a real registry: what a fresh user gets, what is stored to the byte, and what
// becomes of values that somebody else wrote.
#include "settings/SettingsStore.h"

#include <gtest/gtest.h>

#include "tests/support/ScratchRegistry.h"

namespace kzp::test {
namespace {

struct Settings : testing::Test {
    void Store(const wchar_t* name, DWORD type, const void* data, size_t bytes) {
        WriteValue(HKEY_CURRENT_USER, kSettingsKey, name, type, data, bytes);
    }
    std::optional<RegistryValue> Stored(const wchar_t* name) {
        return ReadValue(HKEY_CURRENT_USER, kSettingsKey, name);
    }

    ScratchRegistry registry;
};

TEST_F(Settings, AFreshUserGetsEveryValueWithItsDefault) {
    std::wstring text = L"poison";
    EXPECT_EQ(1, ReadStringSetting(kLaunchView, text)) << "the key itself is new";
    EXPECT_EQ(L"", text);
    DWORD number = 77;
    EXPECT_EQ(1, ReadDwordSetting(kOutputType, number));
    EXPECT_EQ(0u, number);
    BYTE bytes[64] = {};
    DWORD count = sizeof bytes;
    EXPECT_EQ(1, ReadBinarySetting(kFontList, bytes, count));
    EXPECT_EQ(0u, count);

    ASSERT_TRUE(Stored(L"LaunchKZPView"));
    EXPECT_EQ(REG_SZ, Stored(L"LaunchKZPView")->type);
    EXPECT_EQ(0u, Stored(L"LaunchKZPView")->bytes.size());
    ASSERT_TRUE(Stored(L"OutputType"));
    EXPECT_EQ(REG_DWORD, Stored(L"OutputType")->type);
    EXPECT_EQ(4u, Stored(L"OutputType")->bytes.size());
    ASSERT_TRUE(Stored(L"FONTLIST"));
    EXPECT_EQ(REG_BINARY, Stored(L"FONTLIST")->type);
    EXPECT_EQ(0u, Stored(L"FONTLIST")->bytes.size());
}

TEST_F(Settings, TextsAreStoredWithHalfATerminatorAndReadBack) {
    for (const size_t length : {0u, 1u, 6u, 13u, 500u, 1023u}) {
        const std::wstring text(length, L'x');
        EXPECT_EQ(1, WriteStringSetting(kDefaultDir, text));
        ASSERT_TRUE(Stored(L"DefaultDir"));
        EXPECT_EQ(REG_SZ, Stored(L"DefaultDir")->type);
        EXPECT_EQ(2 * length + 1, Stored(L"DefaultDir")->bytes.size()) << length;
        std::wstring read;
        EXPECT_EQ(1, ReadStringSetting(kDefaultDir, read));
        EXPECT_EQ(text, read) << length;
    }
}

TEST_F(Settings, NamesThatReachOutOfTheKeyAreRefused) {
    std::wstring text;
    DWORD number = 77, count = 0;
    for (const wchar_t* name : {L"", L"A\\B", L"\\"}) {
        EXPECT_EQ(0, ReadStringSetting(name, text));
        EXPECT_EQ(0, ReadDwordSetting(name, number));
        EXPECT_EQ(0u, number);
        EXPECT_EQ(0, ReadBinarySetting(name, nullptr, count));
        EXPECT_EQ(0, WriteStringSetting(name, L"x"));
        EXPECT_EQ(0, WriteDwordSetting(name, 1));
        EXPECT_EQ(0, WriteBinarySetting(name, &count, 4));
    }
    EXPECT_FALSE(KeyExists(HKEY_CURRENT_USER, kSettingsKey)) << "nothing was touched";
}

TEST_F(Settings, ValuesOfForeignTypeAndLengthStayInsideTheBuffers) {
    std::wstring text;
    // Exactly the buffer's size, without a terminator.
    const std::wstring full(1024, L'x');
    Store(kPathDirs, REG_BINARY, full.data(), 2048);
    EXPECT_EQ(1, ReadStringSetting(kPathDirs, text));
    EXPECT_EQ(1023u, text.size());
    // Longer: unreadable, and replaced by the default.
    const std::wstring longer(1100, L'y');
    Store(kPathDirs, REG_SZ, longer.data(), 2200);
    EXPECT_EQ(1, ReadStringSetting(kPathDirs, text));
    EXPECT_EQ(L"", text);
    EXPECT_EQ(0u, Stored(L"PathDirs")->bytes.size());
    // A number under a text's name, and texts of odd length, are taken as their bytes.
    const DWORD ab = 0x00420041;
    Store(kPathDirs, REG_DWORD, &ab, 4);
    EXPECT_EQ(1, ReadStringSetting(kPathDirs, text));
    EXPECT_EQ(L"AB", text);
    Store(kPathDirs, REG_BINARY, L"ABC", 5);
    EXPECT_EQ(1, ReadStringSetting(kPathDirs, text));
    EXPECT_EQ(L"ABC", text);

    DWORD number = 0;
    const BYTE bytes[] = {1, 2, 3, 4, 5};
    Store(kOutputType, REG_BINARY, bytes, 2);
    EXPECT_EQ(1, ReadDwordSetting(kOutputType, number));
    EXPECT_EQ(0x0201u, number);
    Store(kOutputType, REG_BINARY, bytes, 5);
    EXPECT_EQ(1, ReadDwordSetting(kOutputType, number));
    EXPECT_EQ(0u, number) << "too long: replaced by the default";

    BYTE buffer[4] = {9, 9, 9, 9};
    DWORD count = 2;
    Store(kFontList, REG_BINARY, bytes, 5);
    EXPECT_EQ(1, ReadBinarySetting(kFontList, buffer, count));
    EXPECT_EQ(0u, count);
    EXPECT_EQ(9, buffer[2]) << "never written behind the count";
}

TEST_F(Settings, InstallDirAloneIsReadFromTheMachine) {
    WriteText(HKEY_LOCAL_MACHINE, kSettingsKey, L"InstallDir", L"C:\\Program Files\\KZP");
    WriteText(HKEY_LOCAL_MACHINE, kSettingsKey, L"installdir2", L"machine");
    std::wstring text;
    EXPECT_EQ(1, ReadStringSetting(kInstallDir, text));
    EXPECT_EQ(L"C:\\Program Files\\KZP", text);
    EXPECT_EQ(1, ReadStringSetting(L"installdir2", text));
    EXPECT_EQ(L"", text) << "the name is compared with its case";
    EXPECT_EQ(1, WriteStringSetting(kInstallDir, L"D:\\Mine"));
    EXPECT_EQ(L"D:\\Mine", Stored(L"InstallDir")->Text()) << "writes go to the user's hive";
    EXPECT_EQ(1, ReadStringSetting(kInstallDir, text));
    EXPECT_EQ(L"C:\\Program Files\\KZP", text);
}

TEST_F(Settings, WithoutRightsReadsAndWritesFailQuietly) {
    ScratchRegistry::RefuseUserKeys();
    std::wstring text = L"poison";
    DWORD number = 77, count = 0;
    EXPECT_EQ(0, ReadStringSetting(kDefaultDir, text));
    EXPECT_EQ(L"", text);
    EXPECT_EQ(0, ReadDwordSetting(kOutputType, number));
    EXPECT_EQ(0u, number);
    EXPECT_EQ(0, ReadBinarySetting(kFontList, &number, count));
    EXPECT_EQ(0, WriteStringSetting(kDefaultDir, L"x"));
    EXPECT_EQ(0, WriteDwordSetting(kOutputType, 1));
}

TEST(YesOrNo, IsComparedOverTheStoredLength) {
    for (const wchar_t* yes : {L"", L"y", L"Ye", L"yes", L"YES"})
        EXPECT_TRUE(IsPrefixOfYes(yes)) << yes;
    for (const wchar_t* other : {L"YESS", L"0", L"n", L"No", L" yes"})
        EXPECT_FALSE(IsPrefixOfYes(other)) << other;
    for (const wchar_t* no : {L"n", L"N", L"no", L"No"})
        EXPECT_TRUE(IsPrefixOfNo(no)) << no;
    EXPECT_FALSE(IsPrefixOfNo(L"nope"));
}

}  // namespace
}  // namespace kzp::test

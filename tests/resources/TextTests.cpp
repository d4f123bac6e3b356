// The numbered texts: all there in every language, short enough for their callers, fit to be read.
#include <gtest/gtest.h>

#include <algorithm>
#include <cwctype>
#include <vector>

#include "resources/resource.h"
#include "support/UniqueHandle.h"
#include "tests/support/Files.h"
#include "tools/driverhost/Text.h"

namespace kzp::test {
namespace {

constexpr LANGID kEnglish = MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US);
constexpr LANGID kTranslations[] = {MAKELANGID(LANG_FRENCH, SUBLANG_NEUTRAL),
                                    MAKELANGID(LANG_GERMAN, SUBLANG_NEUTRAL)};

// Texts lie in blocks of 16, each one's length before it. Empty when the language has none of that number.
std::wstring TextOf(const UniqueModule& file, UINT id, LANGID language) {
    const HRSRC block = FindResourceExW(file.Get(), RT_STRING, MAKEINTRESOURCEW(id / 16 + 1), language);
    if (!block)
        return {};
    const auto* text = static_cast<const wchar_t*>(LockResource(LoadResource(file.Get(), block)));
    for (UINT before = id % 16; before > 0; --before)
        text += 1 + *text;
    return {text + 1, *text};
}

// What a translation keeps: the number of mnemonics, placeholders and product names, how the text ends, and
// the point in numbers, for the edits take no comma.
std::vector<std::ptrdiff_t> Kept(const std::wstring& text) {
    const wchar_t end = text.back() == L':' || text.back() == L'.' ? text.back() : L'\0';
    return {std::ranges::count(text, L'&'), std::ranges::count(text, L'%'),
            text.find(L"KZP") != std::wstring::npos, text.find(L"25.4") != std::wstring::npos, end};
}

TEST(Texts, AreThereInEveryLanguageAndFitTheBuffersOfTheirCallers) {
    const UniqueModule texts(
        LoadLibraryExW(BesideExe(L"KZPWriterRes.dll").c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE));
    for (UINT id = 0; id < 4096; ++id) {
        const std::wstring english = TextOf(texts, id, kEnglish);
        EXPECT_LT(english.size(), 260u) << id;
        for (const LANGID language : kTranslations) {
            SCOPED_TRACE(testing::Message() << "language " << language << ", text " << id);
            const std::wstring text = TextOf(texts, id, language);
            ASSERT_EQ(english.empty(), text.empty());
            if (text.empty())
                continue;
            EXPECT_LT(text.size(), 260u);
            EXPECT_FALSE(std::iswspace(text.front()) || std::iswspace(text.back()));
            EXPECT_EQ(Kept(english), Kept(text)) << driverhost::Utf8(text);
            EXPECT_EQ(std::wstring::npos, text.find(L" :")) << "the blank may not begin a line";
            EXPECT_TRUE(id != IDS_ITEM_HELP_FILE || text == english);
        }
    }
}

}  // namespace
}  // namespace kzp::test

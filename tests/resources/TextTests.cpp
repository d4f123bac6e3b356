// The numbered texts: all there in every language, short enough for their callers, fit to be read.
#include <gtest/gtest.h>

#include <algorithm>
#include <cwctype>
#include <set>
#include <vector>

#include "resources/resource.h"
#include "tests/resources/Delivered.h"
#include "tools/driverhost/Text.h"

namespace kzp::test {
namespace {

struct Range {
    UINT first, last;
};

// In the order of resource.h; it has no other text ids.
constexpr Range kTexts[] = {
    {IDS_HELP_ITEM_NAME, IDS_HELP_ITEM_NAME},
    {IDS_ITEM_HELP_FILE, IDS_ITEM_HELP_FILE},
    {IDS_ICM_INTENT_FIRST, IDS_ICM_INTENT_FIRST + 2},
    {IDS_ICM_METHOD_FIRST, IDS_ICM_METHOD_FIRST + 3},
    {IDS_OUTPUT_HEADING, IDS_LOCATION_LABEL},
    {IDS_BROWSE, IDS_OUTPUT_PAGE_TITLE},
    {IDS_CUSTOM_PAPER, IDS_CUSTOM_PAPER},
    {IDS_PAPER_LABEL, IDS_SETTINGS_PAGE_TITLE},
    {IDS_FOLDER_ERROR_CAPTION, IDS_FOLDER_ERROR_CAPTION},
    {IDS_INSTALL_ERROR_CAPTION, IDS_INSTALL_ERROR_CAPTION},
    {IDS_FONTS_UNAVAILABLE, IDS_OUTPUT_KZP},
    {IDS_BROWSE_TITLE, IDS_BROWSE_TITLE},
    {IDS_HELP_SETTINGS, IDS_INVALID_SIZE_TEXT},
    {IDS_MONITOR_FAILED, IDS_GET_PRINTER_FAILED},
};

// What a translation keeps: the number of mnemonics, placeholders and product names, and how the text ends.
std::vector<std::ptrdiff_t> Kept(const std::wstring& text) {
    const wchar_t end = text.back() == L':' || text.back() == L'.' ? text.back() : L'\0';
    return {std::ranges::count(text, L'&'), std::ranges::count(text, L'%'),
            text.find(L"KZP") != std::wstring::npos, end};
}

TEST(Texts, AreThereInEveryLanguageAndFitTheBuffersOfTheirCallers) {
    ASSERT_NE(nullptr, TextsFile());
    std::set<UINT> known;
    for (const Range& range : kTexts) {
        for (UINT id = range.first; id <= range.last; ++id)
            known.insert(id);
    }
    const std::vector<LANGID> languages = LanguagesOf(PluginFile(), RT_DIALOG, IDD_ADVANCED);
    EXPECT_EQ(languages, LanguagesOf(TextsFile(), RT_STRING, IDS_HELP_ITEM_NAME / 16 + 1));
    EXPECT_LE(3u, languages.size());
    for (const LANGID language : languages) {
        for (UINT id = 0; id < 4096; ++id) {
            SCOPED_TRACE(testing::Message() << "language " << language << ", text " << id);
            const std::wstring text = TextOf(TextsFile(), id, language);
            ASSERT_EQ(known.contains(id), !text.empty())
                << "a number of kTexts has a text in every language, any other in none";
            if (text.empty())
                continue;
            EXPECT_LT(text.size(), 260u);
            EXPECT_FALSE(std::iswspace(text.front()) || std::iswspace(text.back()));
            EXPECT_EQ(Kept(TextOf(TextsFile(), id)), Kept(text)) << driverhost::Utf8(text);
            if (language != kEnglish) {
                EXPECT_EQ(std::wstring::npos, text.find(L" :")) << "the blank may not begin a line";
            }
        }
        EXPECT_EQ(L"kzpwriter.chm", TextOf(TextsFile(), IDS_ITEM_HELP_FILE, language));
    }
}

TEST(Texts, ThePlugInItselfKeepsTwoThatSayTheSame) {
    ASSERT_NE(nullptr, PluginFile());
    for (UINT id = 0; id < 4096; ++id) {
        const std::wstring text = TextOf(PluginFile(), id);
        const bool kept = id == IDS_OUTPUT_HEADING || id == IDS_DOCUMENTS_LOCATION;
        EXPECT_EQ(kept ? TextOf(TextsFile(), id) : std::wstring(), text) << id;
    }
}

}  // namespace
}  // namespace kzp::test

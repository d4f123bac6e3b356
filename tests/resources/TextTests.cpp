// The numbered texts: all there, short enough for their callers, fit to be read.
#include <gtest/gtest.h>

#include <cwctype>

#include "resources/resource.h"
#include "tests/resources/Delivered.h"

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

TEST(Texts, AllAreThereAndFitTheBuffersOfTheirCallers) {
    ASSERT_NE(nullptr, TextsFile());
    for (const Range& range : kTexts) {
        for (UINT id = range.first; id <= range.last; ++id) {
            const std::wstring text = TextOf(TextsFile(), id);
            ASSERT_FALSE(text.empty()) << id;
            EXPECT_LT(text.size(), 260u) << id;
            EXPECT_FALSE(std::iswspace(text.front()) || std::iswspace(text.back())) << id;
        }
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

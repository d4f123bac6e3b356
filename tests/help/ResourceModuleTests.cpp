// Finding, sharing and releasing the resource module, and loading texts from it.
#include "help/ResourceModule.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "resources/resource.h"
#include "support/UniqueHandle.h"
#include "tests/support/Counters.h"
#include "tests/support/Files.h"
#include "tests/support/PlugInDll.h"

namespace kzp::test {
namespace {

struct ResourceModule : testing::Test {
    ~ResourceModule() override {
        // A failed acquisition is counted for ever; the next test starts afresh.
        if (g_hResModule)
            FreeLibrary(g_hResModule);
        g_hResModule = nullptr;
        g_cResModuleUses = 0;
    }

    std::wstring Text(HMODULE beside, UINT id) {
        const PWSTR text = LoadResString(GetProcessHeap(), beside, id);
        if (!text)
            return L"(none)";
        std::wstring result = text;
        EXPECT_EQ((result.size() + 1) * sizeof(wchar_t), HeapSize(GetProcessHeap(), 0, text))
            << "trimmed to fit";
        HeapFree(GetProcessHeap(), 0, text);
        return result;
    }

    HMODULE self = GetModuleHandleW(nullptr);
};

TEST_F(ResourceModule, IsLoadedOnceAndFreedWithItsLastUser) {
    const HMODULE first = AcquireResModule(self);
    ASSERT_NE(nullptr, first);
    EXPECT_EQ(first, AcquireResModule(self));
    EXPECT_EQ(2u, g_cResModuleUses);
    ReleaseResModule(self);
    EXPECT_EQ(2u, g_cResModuleUses) << "any other handle is ignored";
    ReleaseResModule(first);
    EXPECT_EQ(first, g_hResModule);
    ReleaseResModule(first);
    EXPECT_EQ(nullptr, g_hResModule);
    EXPECT_EQ(0u, g_cResModuleUses);
    ReleaseResModule(nullptr);
    EXPECT_EQ(0u, g_cResModuleUses);
}

TEST_F(ResourceModule, GivesTextsAndNothingForMissingOnes) {
    EXPECT_EQ(L"File output location:", Text(self, IDS_OUTPUT_HEADING));
    EXPECT_EQ(0u, g_cResModuleUses) << "the acquisition is given back";
    const size_t blocks = CountHeapBlocks();
    EXPECT_EQ(nullptr, LoadResString(GetProcessHeap(), self, 9999));
    EXPECT_EQ(blocks, CountHeapBlocks());
    EXPECT_EQ(nullptr, LoadResString(nullptr, self, IDS_OUTPUT_HEADING)) << "no heap, no text";
}

TEST_F(ResourceModule, MissingFallsBackToThePlugInsOwnTwoTextsAndIsLookedForAgain) {
    const TemporaryFolder folder;
    const HMODULE alone =
        LoadLibraryExW(folder.Take(L"KZPWriterUI.dll").c_str(), nullptr, DONT_RESOLVE_DLL_REFERENCES);
    ASSERT_NE(nullptr, alone);
    EXPECT_EQ(L"File output location:", Text(alone, IDS_OUTPUT_HEADING));
    EXPECT_EQ(L"My Documents location", Text(alone, IDS_DOCUMENTS_LOCATION));
    EXPECT_EQ(L"(none)", Text(alone, IDS_USER_LOCATION));
    EXPECT_EQ(3u, g_cResModuleUses) << "failed loads count, and are never given back";

    folder.Take(L"KZPWriterRes.dll");
    EXPECT_EQ(L"User document location", Text(alone, IDS_USER_LOCATION));
    EXPECT_NE(nullptr, g_hResModule) << "the failed acquisitions keep the module";
    FreeLibrary(alone);
}

TEST_F(ResourceModule, CutsLongTextsAndSurvivesATruncatedModule) {
    const TemporaryFolder folder;
    const HMODULE alone =
        LoadLibraryExW(folder.Take(L"KZPWriterUI.dll").c_str(), nullptr, DONT_RESOLVE_DLL_REFERENCES);
    ASSERT_NE(nullptr, alone);
    WriteFileText(folder.File(L"KZPWriterRes.dll"), "MZ not a module");
    EXPECT_EQ(L"(none)", Text(alone, IDS_USER_LOCATION));

    const std::wstring module = folder.Take(L"KZPWriterRes.dll");
    // The block of texts 496 to 511 with one of 400 characters as number 503, in the table's own language.
    std::wstring block(16 * 1 + 400, L'\0');
    block[7] = 400;
    block.replace(8, 400, 400, L'x');
    const HANDLE update = BeginUpdateResourceW(module.c_str(), FALSE);
    EXPECT_TRUE(UpdateResourceW(update, RT_STRING, MAKEINTRESOURCEW(503 / 16 + 1),
                                MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), block.data(),
                                static_cast<DWORD>(block.size() * sizeof(wchar_t))));
    EXPECT_TRUE(EndUpdateResourceW(update, FALSE));
    EXPECT_EQ(std::wstring(259, L'x'), Text(alone, IDS_USER_LOCATION));
    FreeLibrary(alone);
}

TEST_F(ResourceModule, CutShortGivesNoTextOrAWholeOne) {
    const TemporaryFolder folder;
    const HMODULE alone =
        LoadLibraryExW(folder.Take(L"KZPWriterUI.dll").c_str(), nullptr, DONT_RESOLVE_DLL_REFERENCES);
    ASSERT_NE(nullptr, alone);
    constexpr UINT kTexts[] = {IDS_USER_LOCATION, IDS_INVALID_SIZE_TEXT, IDS_GET_PRINTER_FAILED};
    const std::filesystem::path module = folder.Take(L"KZPWriterRes.dll");
    for (auto cut = std::filesystem::file_size(module); cut > 512; cut -= 512) {
        std::filesystem::resize_file(module, cut);
        for (const UINT id : kTexts) {
            const std::wstring text = Text(alone, id);
            EXPECT_TRUE(text == L"(none)" || text == Text(self, id)) << cut;
        }
    }
    FreeLibrary(alone);
}

TEST_F(ResourceModule, ServesThoughAnotherLoadedItAsAModule) {
    const UniqueModule loaded(LoadLibraryW(BesideExe(L"KZPWriterRes.dll").c_str()));
    ASSERT_TRUE(loaded);
    EXPECT_NE(nullptr, AcquireResModule(self));
}

}  // namespace
}  // namespace kzp::test

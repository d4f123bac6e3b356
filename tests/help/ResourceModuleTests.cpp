// Finding, sharing and releasing the resource module, and loading texts from it.
#include "help/ResourceModule.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "resources/resource.h"
#include "support/UniqueHandle.h"
#include "tests/support/Counters.h"
#include "tests/support/Files.h"

namespace kzp::test {
namespace {

struct ResourceModule : testing::Test {
    ~ResourceModule() override { StartAfresh(); }

    // A failed acquisition is counted for ever.
    static void StartAfresh() {
        if (g_hResModule)
            FreeLibrary(g_hResModule);
        g_hResModule = nullptr;
        g_cResModuleUses = 0;
    }

    static std::wstring Text(HMODULE beside, UINT id) {
        const PWSTR text = LoadResString(GetProcessHeap(), beside, id);
        if (!text)
            return L"(none)";
        std::wstring result = text;
        HeapFree(GetProcessHeap(), 0, text);
        return result;
    }

    HMODULE self = GetModuleHandleW(nullptr);
    TemporaryFolder folder;
    UniqueModule alone{
        // without the module beside it
        LoadLibraryExW(folder.Take(L"KZPWriterUI.dll").c_str(), nullptr, DONT_RESOLVE_DLL_REFERENCES)};
};

TEST_F(ResourceModule, IsLoadedOnceAndFreedWithItsLastUser) {
    EXPECT_EQ(L"File output location:", Text(self, IDS_OUTPUT_HEADING));
    EXPECT_EQ(0u, g_cResModuleUses) << "the acquisition is given back";
    const size_t blocks = CountHeapBlocks();
    EXPECT_EQ(nullptr, LoadResString(GetProcessHeap(), self, 9999));
    EXPECT_EQ(blocks, CountHeapBlocks());
    EXPECT_EQ(nullptr, LoadResString(nullptr, self, IDS_OUTPUT_HEADING)) << "no heap, no text";

    const HMODULE first = AcquireResModule(self);
    ASSERT_NE(nullptr, first);
    EXPECT_EQ(first, AcquireResModule(self));
    EXPECT_EQ(2u, g_cResModuleUses);
    ReleaseResModule(first);
    EXPECT_EQ(first, g_hResModule);
    ReleaseResModule(first);
    EXPECT_EQ(nullptr, g_hResModule);
    EXPECT_EQ(0u, g_cResModuleUses);

    const UniqueModule loaded(LoadLibraryW(BesideExe(L"KZPWriterRes.dll").c_str()));
    EXPECT_NE(nullptr, AcquireResModule(self)) << "also where another loaded it as a module";
}

TEST_F(ResourceModule, MissingFallsBackToThePlugInsOwnTwoTextsAndIsLookedForAgain) {
    EXPECT_EQ(L"File output location:", Text(alone.Get(), IDS_OUTPUT_HEADING));
    EXPECT_EQ(L"My Documents location", Text(alone.Get(), IDS_DOCUMENTS_LOCATION));
    WriteFileText(folder.File(L"KZPWriterRes.dll"), "MZ not a module");
    EXPECT_EQ(L"(none)", Text(alone.Get(), IDS_USER_LOCATION));
    EXPECT_EQ(3u, g_cResModuleUses) << "failed loads count, and are never given back";

    folder.Take(L"KZPWriterRes.dll");
    EXPECT_EQ(L"User document location", Text(alone.Get(), IDS_USER_LOCATION));
    EXPECT_NE(nullptr, g_hResModule) << "the failed acquisitions keep the module";
}

TEST_F(ResourceModule, CutShortIsNotUsed) {
    constexpr size_t kPage = 4096;
    const std::filesystem::path module = folder.Take(L"KZPWriterRes.dll");
    std::ifstream file(module, std::ios::binary);
    std::string bytes(std::istreambuf_iterator<char>(file), {});
    file.close();
    auto* const nt = reinterpret_cast<IMAGE_NT_HEADERS*>(
        bytes.data() + reinterpret_cast<const IMAGE_DOS_HEADER*>(bytes.data())->e_lfanew);
    IMAGE_FIRST_SECTION(nt)[nt->FileHeader.NumberOfSections - 1].SizeOfRawData += kPage;
    WriteFileText(module, bytes);
    EXPECT_EQ(L"(none)", Text(alone.Get(), IDS_USER_LOCATION)) << "its last section alone is not whole";

    folder.Take(L"KZPWriterRes.dll");
    for (size_t cut = 3 * kPage; cut != 0; cut -= kPage) {
        std::filesystem::resize_file(module, cut);
        EXPECT_EQ(L"(none)", Text(alone.Get(), IDS_USER_LOCATION)) << cut;
    }
}

}  // namespace
}  // namespace kzp::test

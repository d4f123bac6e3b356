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

    static UniqueModule LoadPlugIn(const std::wstring& path) {
        return UniqueModule(LoadLibraryExW(path.c_str(), nullptr, DONT_RESOLVE_DLL_REFERENCES));
    }

    static std::wstring Text(HMODULE beside, UINT id) {
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
    TemporaryFolder folder;
    UniqueModule alone = LoadPlugIn(folder.Take(L"KZPWriterUI.dll"));  // without the module beside it
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

    const UniqueModule loaded(LoadLibraryW(BesideExe(L"KZPWriterRes.dll").c_str()));
    EXPECT_NE(nullptr, AcquireResModule(self)) << "also where another loaded it as a module";
}

TEST_F(ResourceModule, GivesTextsAndNothingForMissingOnes) {
    EXPECT_EQ(L"File output location:", Text(self, IDS_OUTPUT_HEADING));
    EXPECT_EQ(0u, g_cResModuleUses) << "the acquisition is given back";
    const size_t blocks = CountHeapBlocks();
    EXPECT_EQ(nullptr, LoadResString(GetProcessHeap(), self, 9999));
    EXPECT_EQ(blocks, CountHeapBlocks());
    EXPECT_EQ(nullptr, LoadResString(nullptr, self, IDS_OUTPUT_HEADING)) << "no heap, no text";

    // A text of 400 characters as number 503 in its block of 16, in the table's own language.
    const std::wstring module = folder.Take(L"KZPWriterRes.dll");
    std::wstring block(16 + 400, L'\0');
    block[7] = 400;
    block.replace(8, 400, 400, L'x');
    const HANDLE update = BeginUpdateResourceW(module.c_str(), FALSE);
    UpdateResourceW(update, RT_STRING, MAKEINTRESOURCEW(503 / 16 + 1),
                    MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), block.data(),
                    static_cast<DWORD>(block.size() * sizeof(wchar_t)));
    EXPECT_TRUE(EndUpdateResourceW(update, FALSE));
    EXPECT_EQ(std::wstring(259, L'x'), Text(alone.Get(), IDS_USER_LOCATION));
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

TEST_F(ResourceModule, IsFoundWhereItsPathIsAsLongAsPathsMayBe) {
    for (const size_t folderLength : {242u, 243u}) {
        StartAfresh();
        const std::wstring path = folder.Deep(folderLength);
        for (const wchar_t* const name : {L"\\KZPWriterUI.dll", L"\\KZPWriterRes.dll"})
            CopyFileW(BesideExe(name + 1).c_str(), (L"\\\\?\\" + path + name).c_str(), FALSE);
        const UniqueModule plugIn = LoadPlugIn(path + L"\\KZPWriterUI.dll");
        ASSERT_TRUE(plugIn);
        EXPECT_EQ(folderLength == 242, AcquireResModule(plugIn.Get()) != nullptr) << folderLength;
    }
}

TEST_F(ResourceModule, CutShortIsNotUsedOrGivesWholeTexts) {
    constexpr UINT kTexts[] = {IDS_USER_LOCATION, IDS_INVALID_SIZE_TEXT, IDS_GET_PRINTER_FAILED};
    constexpr size_t kPage = 4096;
    const std::filesystem::path module = folder.Take(L"KZPWriterRes.dll");
    std::ifstream file(module, std::ios::binary);
    std::string bytes(std::istreambuf_iterator<char>(file), {});
    file.close();
    auto* const nt = reinterpret_cast<IMAGE_NT_HEADERS*>(
        bytes.data() + reinterpret_cast<const IMAGE_DOS_HEADER*>(bytes.data())->e_lfanew);
    IMAGE_FIRST_SECTION(nt)[nt->FileHeader.NumberOfSections - 1].SizeOfRawData += kPage;
    WriteFileText(module, bytes);
    EXPECT_EQ(nullptr, AcquireResModule(alone.Get())) << "its last section alone is not whole";

    folder.Take(L"KZPWriterRes.dll");
    const auto whole = std::filesystem::file_size(module);
    for (auto cut = whole; cut > 512; cut -= 512) {
        std::filesystem::resize_file(module, cut);
        StartAfresh();
        // What is missing in the last page reads as zeros.
        EXPECT_TRUE(cut > (whole - 1) / kPage * kPage || !AcquireResModule(alone.Get())) << cut;
        for (const UINT id : kTexts) {
            const std::wstring text = Text(alone.Get(), id);
            StartAfresh();
            EXPECT_TRUE(text == L"(none)" || text == Text(self, id)) << cut;
        }
    }
}

}  // namespace
}  // namespace kzp::test

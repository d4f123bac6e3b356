// The private device-mode record through IPrintOemUI2::DevMode: sizes, defaults, blocks of any age, and the
// gate that the companion shuts.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <vector>

#include "core/KZPPrivateDevMode.h"
#include "core/SignalMapping.h"
#include "tests/support/Counters.h"
#include "tests/support/EdgeBlock.h"
#include "tests/support/Files.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/ScratchRegistry.h"
#include "tools/driverhost/PlugIn.h"
#include "tools/standins/companions/Companions.h"

namespace kzp::test {
namespace {

constexpr DWORD kSignature = 0x42524D4B;
constexpr DWORD kForeign = 0x31313131;
constexpr OEM_DMEXTRAHEADER kHeader = {560, kSignature, 0x03050007};

DWORD g_majorVersion = 0;

BOOL WINAPI ReportVersion(OSVERSIONINFOW* version) {
    version->dwMajorVersion = g_majorVersion;
    return TRUE;
}

KZPPrivateDevMode FilledRecord(BYTE options) {
    KZPPrivateDevMode record;
    std::memset(&record, 0xEE, sizeof record);
    std::memset(&record.dwOptionSel1, options, 2 * sizeof(DWORD));
    record.dmOEMExtra = kHeader;
    return record;
}

struct DevModeRecord : testing::Test {
    DevModeRecord() {
        g_majorVersion = 5;  // an old system, and no companion: the gate is open
        SetQueue(0x240);
    }

    static void SetQueue(DWORD attributes) {
        WriteDword(HKEY_LOCAL_MACHINE, kQueueKey, L"Attributes", attributes);
    }
    HRESULT Run(DWORD mode, const void* in = nullptr, void* out = nullptr) {
        OEMDMPARAM param = {};
        param.cbSize = sizeof param;
        param.pOEMDMIn = const_cast<void*>(in);
        param.pOEMDMOut = out;
        const HRESULT result = object->DevMode(mode, &param);
        EXPECT_EQ(mode == OEMDM_SIZE && result == S_OK ? 560u : 0u, param.cbBufSize);
        return result;
    }

    ScratchRegistry registry;
    driverhost::PlugIn dll;
    ImportPatch version{dll.Module(), "GetVersionExW", AddressOf(ReportVersion)};
    driverhost::ComRef<IPrintOemUI2> object = dll.CreateObject();
};

DWORD WINAPI AnswerMargins(HANDLE printer, LPWSTR name, LPDWORD, LPBYTE data, DWORD size, LPDWORD) {
    EXPECT_EQ(nullptr, printer) << "as the driver gave it";
    EXPECT_STREQ(L"KZP Margin", name);
    const std::vector<float> margins(size / sizeof(float), 1.5f);
    std::memcpy(data, margins.data(), size);
    return ERROR_SUCCESS;
}

TEST_F(DevModeRecord, DefaultsTakeTheMarginsStoredWithThePrinter) {
    const ImportPatch patch(dll.Module(), "GetPrinterDataW", AddressOf(AnswerMargins));
    KZPPrivateDevMode expected = FilledRecord(0), record = FilledRecord(0xEE);
    for (float& margin : expected.fMargins)
        margin = 1.5f;
    record.dmOEMExtra = {};
    EXPECT_EQ(S_OK, Run(OEMDM_DEFAULT, nullptr, &record));
    EXPECT_EQ(0, std::memcmp(&expected, &record, sizeof record));
}

// Blocks of any age and of sizes that they only state themselves, each at the edge of what may be accessed.
// The two signatures are compared with each other, not with ours; every merge clears the selections.
struct Conversion : DevModeRecord {
    void Expect(DWORD mode, DWORD held, DWORD stated, DWORD signature, DWORD outSignature) {
        const EdgeBlock in(held), out(560);
        std::memset(in.Data(), 0x11, held);
        const OEM_DMEXTRAHEADER header = {stated, signature, 0x03000000};
        std::memcpy(in.Data(), &header, std::min<size_t>(held, sizeof header));
        KZPPrivateDevMode before = FilledRecord(0xEE), expected = FilledRecord(0);
        before.dmOEMExtra.dwSize = std::max<DWORD>(stated, 560);  // must not widen the copy either
        before.dmOEMExtra.dwSignature = outSignature;
        std::memcpy(out.Data(), &before, sizeof before);
        if (stated >= 8 && signature == outSignature) {
            std::memcpy(&expected, in.Data(), std::min<DWORD>(stated, 560));
            expected.dmOEMExtra = {560, outSignature, kHeader.dwVersion};
        }
        if (mode == OEMDM_MERGE) {
            expected.dwOptionSel1 = expected.dwOptionSel2 = 0;
            expected.dmOEMExtra = kHeader;
        }
        EXPECT_EQ(S_OK, Run(mode, in.Data(), out.Data()));
        EXPECT_EQ(0, std::memcmp(&expected, out.Data(), sizeof expected))
            << "mode " << mode << ": " << held << " bytes that state " << stated;
    }
};

TEST_F(Conversion, TakesAsMuchAsBothBlocksHold) {
    for (const DWORD held : {4u, 8u, 12u, 16u, 20u, 36u, 37u, 559u, 560u}) {
        for (const DWORD stated : {DWORD{7}, DWORD{8}, held, DWORD{1000}, ~DWORD{0}}) {
            // Whole blocks may state anything; shorter ones at most what they hold.
            if (stated > held && held < 560)
                continue;
            for (const DWORD mode : {OEMDM_CONVERT, OEMDM_MERGE}) {
                Expect(mode, held, stated, kSignature, kSignature);
                Expect(mode, held, stated, kForeign, kSignature);
                Expect(mode, held, stated, kForeign, kForeign);
            }
        }
    }
}

int g_unmapped = 0;

BOOL WINAPI NoteUnmap(LPCVOID view) {
    ++g_unmapped;
    return UnmapViewOfFile(view);
}

TEST_F(DevModeRecord, TheCompanionsSignalShutsEveryOperationOnOldSystemsAndDirectQueues) {
    const ImportPatch unmap(dll.Module(), "UnmapViewOfFile", AddressOf(NoteUnmap));
    g_unmapped = 0;
    {
        const SignalMapping signal(true, true);
        ASSERT_TRUE(signal.IsValid());
        const size_t handles = CountHandles();
        for (DWORD mode = OEMDM_SIZE; mode <= OEMDM_MERGE; ++mode)
            EXPECT_EQ(E_FAIL, Run(mode)) << mode;
        EXPECT_EQ(4, g_unmapped);
        EXPECT_EQ(handles, CountHandles());
        g_majorVersion = 6;
        EXPECT_EQ(S_OK, Run(OEMDM_SIZE)) << "on newer systems a spooled queue asks for a window";
        SetQueue(0x242);
        EXPECT_EQ(E_FAIL, Run(OEMDM_SIZE)) << "a direct queue asks for the signal";
        RegDeleteTreeW(HKEY_LOCAL_MACHINE, kQueueKey);
        EXPECT_EQ(E_FAIL, Run(OEMDM_SIZE)) << "an unknown queue counts as direct";
    }
    for (DWORD mode = 0; mode < 20; ++mode)
        EXPECT_EQ(S_OK, Run(mode)) << mode << " without a record to read or write";
    EXPECT_EQ(E_FAIL, object->DevMode(OEMDM_SIZE, nullptr));
}

// Real processes, real windows.
TEST_F(DevModeRecord, TheCompanionsWindowShutsSpooledQueuesOfNewerSystems) {
    g_majorVersion = 6;
    const HWND printing = CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 0, 0, 9, 9, nullptr,
                                          nullptr, nullptr, nullptr);
    const HWND metFirst = CreateWindowExW(WS_EX_TOPMOST, L"STATIC", L"", WS_POPUP, 0, 0, 9, 9, nullptr,
                                          nullptr, nullptr, nullptr);
    EXPECT_EQ(S_OK, Run(OEMDM_SIZE)) << "windows of the program that prints do not count";
    const TemporaryFolder folders[2];
    const auto start = [](const TemporaryFolder& folder, const wchar_t* name, const wchar_t* does) {
        EXPECT_TRUE(standins::StartCompanion(standins::PlaceCompanion(folder.Path(), name, does)));
        EXPECT_TRUE(standins::WaitReady(name));
    };
    start(folders[0], L"kzpwriterINTERACTION.exe", standins::kShowsWindow);
    EXPECT_EQ(E_FAIL, Run(OEMDM_SIZE));
    standins::QuitAll();
    start(folders[1], L"KzpWriterInteraction.exe", standins::kDoesNothing);
    EXPECT_EQ(S_OK, Run(OEMDM_SIZE)) << "without a window";
    standins::QuitAll();
    DestroyWindow(metFirst);
    DestroyWindow(printing);
}

}  // namespace
}  // namespace kzp::test

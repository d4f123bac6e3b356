// The private device-mode record through IPrintOemUI2::DevMode: sizes, defaults, blocks of any age, and the
// gate.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <vector>

#include "core/KZPPrivateDevMode.h"
#include "core/SignalMapping.h"
#include "tests/support/EdgeBlock.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/PlugInDll.h"
#include "tests/support/ScratchRegistry.h"

namespace kzp::test {
namespace {

constexpr DWORD kSignature = 0x42524D4B;
constexpr DWORD kForeign = 0x31313131;
constexpr OEM_DMEXTRAHEADER kHeader = {560, kSignature, 0x03050007};

DWORD g_majorVersion = 0;

BOOL WINAPI ReportVersion(OSVERSIONINFOW* version) {
    EXPECT_EQ(276u, version->dwOSVersionInfoSize);
    version->dwMajorVersion = g_majorVersion;
    return TRUE;
}

KZPPrivateDevMode FilledRecord(BYTE filling) {
    KZPPrivateDevMode record;
    std::memset(&record, filling, sizeof record);
    record.dmOEMExtra = kHeader;
    return record;
}

struct DevModeRecord : testing::Test {
    DevModeRecord() { g_majorVersion = 5; }  // an old system, and no companion: the gate is open

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
    PlugInDll dll;
    ImportPatch version{dll.Module(), "GetVersionExW", AddressOf(ReportVersion)};
    driverhost::ComRef<IPrintOemUI2> object = dll.CreateObject();
};

TEST_F(DevModeRecord, NeedsABlockAndItsPartsAndAKnownMode) {
    KZPPrivateDevMode record = FilledRecord(0xEE);
    const KZPPrivateDevMode before = record;
    EXPECT_EQ(E_FAIL, object->DevMode(OEMDM_SIZE, nullptr));
    for (const DWORD mode : {OEMDM_CONVERT, OEMDM_MERGE}) {
        EXPECT_EQ(S_OK, Run(mode, &record, nullptr));
        EXPECT_EQ(S_OK, Run(mode, nullptr, &record));
    }
    EXPECT_EQ(S_OK, Run(OEMDM_DEFAULT, &record, nullptr));
    EXPECT_EQ(S_OK, Run(17, &record, &record));
    EXPECT_EQ(0, std::memcmp(&before, &record, sizeof record));
}

DWORD g_storedBytes = 0;
constexpr float kStoredMargins[] = {1.5f, 2.5f, 3.5f, 4.5f, 5.5f};

DWORD WINAPI AnswerMargins(HANDLE printer, LPWSTR name, LPDWORD type, LPBYTE data, DWORD size,
                           LPDWORD needed) {
    EXPECT_EQ(nullptr, printer) << "as the driver gave it";
    EXPECT_STREQ(L"KZP Margin", name);
    EXPECT_EQ(nullptr, type);
    *needed = g_storedBytes;
    if (g_storedBytes > size)
        return ERROR_MORE_DATA;
    std::memcpy(data, kStoredMargins, g_storedBytes);
    return ERROR_SUCCESS;
}

TEST_F(DevModeRecord, DefaultsTakeTheMarginsStoredWithThePrinter) {
    const ImportPatch patch(dll.Module(), "GetPrinterDataW", AddressOf(AnswerMargins));
    for (const DWORD bytes : {0u, 8u, 16u, 20u}) {
        KZPPrivateDevMode expected = FilledRecord(0xEE);
        std::memset(&expected.dwOptionSel1, 0, 2 * sizeof(DWORD) + sizeof expected.fMargins);
        std::memcpy(expected.fMargins, kStoredMargins,
                    bytes <= 16 ? bytes : 0);  // a longer value is not ours
        g_storedBytes = bytes;
        KZPPrivateDevMode record = FilledRecord(0xEE);
        record.dmOEMExtra = {};
        EXPECT_EQ(S_OK, Run(OEMDM_DEFAULT, nullptr, &record));
        EXPECT_EQ(0, std::memcmp(&expected, &record, sizeof record)) << bytes;
    }
}

// Blocks of any age and of sizes that they only state themselves, each at the edge of what may be accessed.
// The two signatures are compared with each other, not with ours; every merge clears the selections.
TEST_F(DevModeRecord, ConvertsAndMergesAsMuchAsBothBlocksHold) {
    struct Case {
        DWORD held, stated, signature, outSignature = kSignature;
    };
    std::vector<Case> cases = {
        {4, 4, kSignature},     {8, 8, kSignature},      {12, 12, kSignature},
        {16, 16, kSignature},   {20, 20, kSignature},    {36, 36, kSignature},
        {37, 37, kSignature},   {100, 100, kSignature},  {559, 559, kSignature},
        {560, 560, kSignature}, {560, 8, kSignature},    {560, 7, kSignature},
        {560, 7, kForeign},     {560, 1000, kSignature}, {560, ~0u, kSignature},
        {12, 12, kForeign},     {560, 560, kForeign},    {560, 560, kForeign, kForeign},
    };
    // Whole blocks may state anything; shorter ones at most what they hold.
    std::mt19937 random(1);
    for (int record = 0; record < 1000; ++record) {
        const DWORD held = record % 2 ? 560 : 4 + random() % 556;
        const DWORD stated = record % 4 == 3 ? random() : random() % (held + 1);
        cases.push_back(
            {held, stated, random() % 4 ? kSignature : kForeign, random() % 4 ? kSignature : kForeign});
    }
    for (const auto& [held, stated, signature, outSignature] : cases) {
        for (const DWORD mode : {OEMDM_CONVERT, OEMDM_MERGE}) {
            const EdgeBlock in(held);
            const EdgeBlock out(560);
            std::memset(in.Data(), 0x11, held);
            const OEM_DMEXTRAHEADER header = {stated, signature, 0x03000000};
            std::memcpy(in.Data(), &header, std::min<size_t>(held, sizeof header));
            KZPPrivateDevMode expected = FilledRecord(0xEE);
            expected.dmOEMExtra.dwSize = std::max<DWORD>(stated, 560);  // must not widen the copy either
            expected.dmOEMExtra.dwSignature = outSignature;
            std::memcpy(out.Data(), &expected, sizeof expected);

            expected.dwOptionSel1 = expected.dwOptionSel2 = 0;
            expected.dmOEMExtra = kHeader;
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
    }
}

std::string g_calls;
bool g_refuseView = false;

LPVOID WINAPI NoteMap(HANDLE mapping, DWORD access, DWORD high, DWORD low, SIZE_T bytes) {
    g_calls += "map ";
    return g_refuseView ? nullptr : MapViewOfFile(mapping, access, high, low, bytes);
}

BOOL WINAPI NoteUnmap(LPCVOID view) {
    g_calls += "unmap ";
    return UnmapViewOfFile(view);
}

BOOL WINAPI NoteClose(HANDLE handle) {
    g_calls += "close ";
    return CloseHandle(handle);
}

TEST_F(DevModeRecord, TheCompanionsSignalShutsEveryOperationOnOldSystemsAndDirectQueues) {
    const ImportPatch patches[] = {{dll.Module(), "MapViewOfFile", AddressOf(NoteMap)},
                                   {dll.Module(), "UnmapViewOfFile", AddressOf(NoteUnmap)},
                                   {dll.Module(), "CloseHandle", AddressOf(NoteClose)}};
    WriteDword(HKEY_LOCAL_MACHINE, kQueueKey, L"Attributes", 0x240);
    KZPPrivateDevMode record = FilledRecord(0);
    {
        const SignalMapping signal(true, true);
        ASSERT_TRUE(signal.IsValid());
        for (DWORD mode = OEMDM_SIZE; mode <= OEMDM_MERGE; ++mode) {
            g_calls.clear();
            EXPECT_EQ(E_FAIL, Run(mode, &record, &record)) << mode;
            EXPECT_EQ("map unmap close ", g_calls);
        }
        g_refuseView = true;
        g_calls.clear();
        EXPECT_EQ(S_OK, Run(OEMDM_SIZE));
        EXPECT_EQ("map close close ", g_calls) << "a signal that cannot be mapped lets through";
        g_refuseView = false;

        g_majorVersion = 6;
        EXPECT_EQ(S_OK, Run(OEMDM_SIZE)) << "on newer systems a spooled queue asks for a window";
        WriteDword(HKEY_LOCAL_MACHINE, kQueueKey, L"Attributes", 0x242);
        EXPECT_EQ(E_FAIL, Run(OEMDM_SIZE)) << "a direct queue asks for the signal";
        RegDeleteTreeW(HKEY_LOCAL_MACHINE, kQueueKey);
        EXPECT_EQ(E_FAIL, Run(OEMDM_SIZE)) << "an unknown queue counts as direct";
    }
    EXPECT_EQ(S_OK, Run(OEMDM_SIZE));
}

}  // namespace
}  // namespace kzp::test

// The private device-mode record through IPrintOemUI2::DevMode: sizes, defaults, blocks of any age, and the
// gate.
#include <gtest/gtest.h>

#include <cstring>
#include <memory>

#include "core/KZPPrivateDevMode.h"
#include "core/SignalMapping.h"
#include "tests/support/EdgeBlock.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/PlugInDll.h"
#include "tests/support/ScratchRegistry.h"

namespace kzp::test {
namespace {

constexpr DWORD kSignature = 0x42524D4B;
constexpr DWORD kVersion = 0x03050007;

DWORD g_majorVersion = 0;

BOOL WINAPI ReportVersion(OSVERSIONINFOW* version) {
    EXPECT_EQ(276u, version->dwOSVersionInfoSize);
    version->dwMajorVersion = g_majorVersion;
    return TRUE;
}

KZPPrivateDevMode FilledRecord(BYTE filling) {
    KZPPrivateDevMode record;
    std::memset(&record, filling, sizeof record);
    record.dmOEMExtra = {sizeof record, kSignature, kVersion};
    return record;
}

struct DevModeRecord : testing::Test {
    DevModeRecord() {
        // A queue that prints directly on an old system, and no companion: the gate is open.
        g_majorVersion = 5;
    }
    ~DevModeRecord() override { object->Release(); }

    HRESULT Run(DWORD mode, const void* in, void* out) {
        OEMDMPARAM param = {};
        param.cbSize = sizeof param;
        param.hPrinter = nullptr;
        param.pOEMDMIn = const_cast<void*>(in);
        param.pOEMDMOut = out;
        return object->DevMode(mode, &param);
    }

    ScratchRegistry registry;
    PlugInDll dll;
    ImportPatch version{dll.Module(), "GetVersionExW", AddressOf(ReportVersion)};
    IPrintOemUI2* object = dll.Create();
};

TEST_F(DevModeRecord, TellsItsSizeAndIgnoresUnknownModes) {
    OEMDMPARAM param = {};
    EXPECT_EQ(S_OK, object->DevMode(OEMDM_SIZE, &param));
    EXPECT_EQ(560u, param.cbBufSize);
    EXPECT_EQ(S_OK, object->DevMode(17, &param));
    for (DWORD mode = OEMDM_SIZE; mode <= OEMDM_MERGE; ++mode)
        EXPECT_EQ(E_FAIL, object->DevMode(mode, nullptr)) << mode;
}

TEST_F(DevModeRecord, DefaultsWithoutStoredMarginsAreZero) {
    KZPPrivateDevMode record = FilledRecord(0xEE);
    EXPECT_EQ(S_OK, Run(OEMDM_DEFAULT, nullptr, &record));
    EXPECT_EQ(560u, record.dmOEMExtra.dwSize);
    EXPECT_EQ(kSignature, record.dmOEMExtra.dwSignature);
    EXPECT_EQ(kVersion, record.dmOEMExtra.dwVersion);
    EXPECT_EQ(0u, record.dwOptionSel1);
    EXPECT_EQ(0u, record.dwOptionSel2);
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(0.0f, record.fMargins[i]) << i;
    EXPECT_EQ(0xEE, record.reserved[0]);
    EXPECT_EQ(0xEE, record.reserved[523]) << "the reserved bytes are not touched";
}

float g_storedMargins[5];
DWORD g_storedBytes = 0;

DWORD WINAPI AnswerMargins(HANDLE, LPWSTR name, LPDWORD type, LPBYTE data, DWORD size, LPDWORD needed) {
    EXPECT_STREQ(L"KZP Margin", name);
    EXPECT_EQ(nullptr, type);
    *needed = g_storedBytes;
    if (g_storedBytes > size)
        return ERROR_MORE_DATA;
    std::memcpy(data, g_storedMargins, g_storedBytes);
    return ERROR_SUCCESS;
}

TEST_F(DevModeRecord, DefaultsTakeTheMarginsStoredWithThePrinter) {
    const ImportPatch patch(dll.Module(), "GetPrinterDataW", AddressOf(AnswerMargins));
    const float margins[] = {1.5f, 2.5f, 3.5f, 4.5f, 5.5f};
    std::memcpy(g_storedMargins, margins, sizeof margins);
    KZPPrivateDevMode record = FilledRecord(0xEE);
    g_storedBytes = 16;
    EXPECT_EQ(S_OK, Run(OEMDM_DEFAULT, nullptr, &record));
    EXPECT_EQ(0, std::memcmp(margins, record.fMargins, 16));
    g_storedBytes = 20;
    EXPECT_EQ(S_OK, Run(OEMDM_DEFAULT, nullptr, &record));
    EXPECT_EQ(0.0f, record.fMargins[0]) << "a longer value is not ours";
}

TEST_F(DevModeRecord, ConvertsAsMuchAsAnOlderBlockHolds) {
    for (const DWORD size : {12u, 16u, 20u, 36u, 37u, 100u, 559u, 560u}) {
        KZPPrivateDevMode out = FilledRecord(0xEE);
        const EdgeBlock in(size);
        std::memset(in.Data(), 0x11, size);
        const OEM_DMEXTRAHEADER header = {size, kSignature, 0x03000000};
        std::memcpy(in.Data(), &header, sizeof header);

        KZPPrivateDevMode expected = FilledRecord(0xEE);
        expected.dwOptionSel1 = expected.dwOptionSel2 = 0;
        std::memcpy(&expected, in.Data(), size);
        expected.dmOEMExtra = {560, kSignature, kVersion};

        EXPECT_EQ(S_OK, Run(OEMDM_CONVERT, in.Data(), &out));
        EXPECT_EQ(0, std::memcmp(&expected, &out, sizeof out)) << size;
    }
}

TEST_F(DevModeRecord, ConvertsTruncatedForeignAndOverlongBlocksInsideTheirBounds) {
    const KZPPrivateDevMode before = FilledRecord(0xEE);
    const struct {
        DWORD held, size, signature;
        bool copied;
    } cases[] = {
        {4, 4, 0, false},
        {12, 12, 0x12345678, false},
        {560, 560, 0x12345678, false},
        {560, 0xFFFFFFFF, kSignature, true},
        {560, 1000, kSignature, true},
    };
    for (const auto& [held, size, signature, copied] : cases) {
        const EdgeBlock in(held);
        const EdgeBlock out(560);
        std::memset(in.Data(), 0x11, held);
        const OEM_DMEXTRAHEADER header = {size, signature, kVersion};
        std::memcpy(in.Data(), &header, std::min<size_t>(held, sizeof header));
        std::memcpy(out.Data(), &before, sizeof before);
        // An over-long target size must not widen the copy either.
        const DWORD targetSize = size > 560 ? size : 560;
        std::memcpy(out.Data(), &targetSize, sizeof targetSize);

        EXPECT_EQ(S_OK, Run(OEMDM_CONVERT, in.Data(), out.Data()));
        KZPPrivateDevMode after;
        std::memcpy(&after, out.Data(), sizeof after);
        EXPECT_EQ(560u, after.dmOEMExtra.dwSize);
        EXPECT_EQ(kSignature, after.dmOEMExtra.dwSignature);
        EXPECT_EQ(kVersion, after.dmOEMExtra.dwVersion);
        EXPECT_EQ(copied ? 0x11111111u : 0u, after.dwOptionSel1) << held << " of " << size;
        EXPECT_EQ(copied ? 0x11 : 0xEE, after.reserved[523]) << held << " of " << size;
    }
}

TEST_F(DevModeRecord, ComparesTheTwoSignaturesWithEachOther) {
    KZPPrivateDevMode in = FilledRecord(0x11);
    KZPPrivateDevMode out = FilledRecord(0xEE);
    in.dmOEMExtra.dwSignature = out.dmOEMExtra.dwSignature = 0x31313131;
    EXPECT_EQ(S_OK, Run(OEMDM_CONVERT, &in, &out));
    EXPECT_EQ(0x31313131u, out.dmOEMExtra.dwSignature) << "equal, though not ours: copied and kept";
    EXPECT_EQ(0x11111111u, out.dwOptionSel1);
}

TEST_F(DevModeRecord, MergeAlwaysClearsTheSelections) {
    KZPPrivateDevMode in = FilledRecord(0x11);
    KZPPrivateDevMode out = FilledRecord(0xEE);
    EXPECT_EQ(S_OK, Run(OEMDM_MERGE, &in, &out));
    EXPECT_EQ(0u, out.dwOptionSel1);
    EXPECT_EQ(0u, out.dwOptionSel2);
    EXPECT_EQ(0, std::memcmp(in.fMargins, out.fMargins, sizeof in.fMargins));
    EXPECT_EQ(0x11, out.reserved[523]);
}

TEST_F(DevModeRecord, MissingBlocksAreNoWork) {
    KZPPrivateDevMode record = FilledRecord(0xEE);
    const KZPPrivateDevMode before = record;
    for (const DWORD mode : {OEMDM_CONVERT, OEMDM_MERGE}) {
        EXPECT_EQ(S_OK, Run(mode, nullptr, &record));
        EXPECT_EQ(S_OK, Run(mode, &record, nullptr));
        EXPECT_EQ(0, std::memcmp(&before, &record, sizeof record));
    }
}

TEST_F(DevModeRecord, TheCompanionsSignalShutsEveryOperationOnOldSystemsAndDirectQueues) {
    WriteDword(HKEY_LOCAL_MACHINE, kQueueKey, L"Attributes", 0x240);
    KZPPrivateDevMode record = FilledRecord(0);
    {
        const SignalMapping signal(true, true);
        ASSERT_TRUE(signal.IsValid());
        for (DWORD mode = OEMDM_SIZE; mode <= OEMDM_MERGE; ++mode)
            EXPECT_EQ(E_FAIL, Run(mode, &record, &record)) << mode;

        g_majorVersion = 6;
        EXPECT_EQ(S_OK, Run(OEMDM_SIZE, nullptr, nullptr))
            << "on newer systems a spooled queue asks for a window";
        WriteDword(HKEY_LOCAL_MACHINE, kQueueKey, L"Attributes", 0x242);
        EXPECT_EQ(E_FAIL, Run(OEMDM_SIZE, nullptr, nullptr)) << "a direct queue asks for the signal";
        RegDeleteTreeW(HKEY_LOCAL_MACHINE, kQueueKey);
        EXPECT_EQ(E_FAIL, Run(OEMDM_SIZE, nullptr, nullptr)) << "an unknown queue counts as direct";
    }
    EXPECT_EQ(S_OK, Run(OEMDM_SIZE, nullptr, nullptr));
}

int g_closed = 0;

BOOL WINAPI CountClose(HANDLE handle) {
    ++g_closed;
    return CloseHandle(handle);
}

LPVOID WINAPI RefuseView(HANDLE, DWORD, DWORD, DWORD, SIZE_T) {
    return nullptr;
}

TEST_F(DevModeRecord, ASignalThatCannotBeMappedIsClosedTwiceAndLetsThrough) {
    const SignalMapping signal(true, true);
    const ImportPatch view(dll.Module(), "MapViewOfFile", AddressOf(RefuseView));
    const ImportPatch close(dll.Module(), "CloseHandle", AddressOf(CountClose));
    g_closed = 0;
    EXPECT_EQ(S_OK, Run(OEMDM_SIZE, nullptr, nullptr));
    EXPECT_EQ(2, g_closed);
}

}  // namespace
}  // namespace kzp::test

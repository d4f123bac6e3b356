// Device-mode records through IPrintOemUI2::DevMode: every single-byte change of a whole record, and random,
// short and mutated ones, in blocks that end at an inaccessible page.
#include <algorithm>
#include <cstring>
#include <iterator>

#include "core/KZPPrinterUI.h"
#include "core/KZPPrivateDevMode.h"
#include "tests/support/EdgeBlock.h"
#include "tools/stress/Campaigns.h"
#include "tools/stress/World.h"

namespace stress {

namespace {

using kzp::KZPPrivateDevMode;

constexpr size_t kWhole = sizeof(KZPPrivateDevMode);
constexpr size_t kLongest = 2 * kWhole;
constexpr LONG64 kRecordsPerIteration = 1000;

struct Tester {
    Run& run;
    IPrintOemUI2* plugIn;
    kzp::test::EdgeBlock source{kLongest};
    kzp::test::EdgeBlock target{kWhole};
    BYTE valid[kWhole];

    explicit Tester(Run& runs, IPrintOemUI2* object) : run(runs), plugIn(object) {
        for (size_t at = 0; at < kWhole; ++at)
            valid[at] = static_cast<BYTE>(at * 7 + 1);
        const OEM_DMEXTRAHEADER header = {kWhole, kzp::kWriterSignature, kzp::kWriterVersion};
        std::memcpy(valid, &header, sizeof header);
    }

    // What holds for every result, whatever came in.
    void Operate(DWORD mode, const BYTE* in, size_t inBytes, const BYTE* out) {
        BYTE* const from = source.Last(inBytes);
        BYTE* const to = target.Data();
        std::memcpy(from, in, inBytes);
        std::memcpy(to, out, kWhole);
        OEMDMPARAM param = {};
        param.cbSize = sizeof param;
        param.pOEMDMIn = from;
        param.pOEMDMOut = to;
        run.Expect(plugIn->DevMode(mode, &param) == S_OK, L"operation %lu answers a failure", mode);

        OEM_DMEXTRAHEADER after, before;
        std::memcpy(&after, to, sizeof after);
        std::memcpy(&before, out, sizeof before);
        run.Expect(
            after.dwSize == kWhole && after.dwVersion == kzp::kWriterVersion &&
                (after.dwSignature == before.dwSignature || after.dwSignature == kzp::kWriterSignature),
            L"operation %lu: header %lu %08lX %08lX", mode, after.dwSize, after.dwSignature, after.dwVersion);
        run.Expect(std::memcmp(from, in, inBytes) == 0, L"operation %lu writes into its source", mode);
        const size_t kept = mode == OEMDM_DEFAULT ? offsetof(KZPPrivateDevMode, reserved)
                                                  : std::max(inBytes, offsetof(KZPPrivateDevMode, fMargins));
        if (kept < kWhole)
            run.Expect(std::memcmp(to + kept, out + kept, kWhole - kept) == 0,
                       L"operation %lu writes behind the %zu bytes it has", mode, kept);
        static constexpr BYTE kZeros[8] = {};
        if (mode != OEMDM_CONVERT)
            run.Expect(
                std::memcmp(to + offsetof(KZPPrivateDevMode, dwOptionSel1), kZeros, sizeof kZeros) == 0,
                L"operation %lu leaves a selection", mode);
    }

    // As the driver's stored block, as an application's, and as the block that is written over.
    void Try(const BYTE* record, size_t bytes) {
        Operate(OEMDM_CONVERT, record, bytes, valid);
        Operate(OEMDM_MERGE, record, bytes, valid);
        if (bytes >= kWhole) {
            Operate(OEMDM_DEFAULT, valid, kWhole, record);
            Operate(OEMDM_CONVERT, valid, kWhole, record);
            Operate(OEMDM_MERGE, valid, kWhole, record);
        }
        run.Tried();
    }

    // In brief single bits alone, and a single one of each byte that is only carried along.
    bool IsTried(size_t offset, int change) const {
        const bool singleBit = (change & (change - 1)) == 0;
        return !run.Brief() || (offset < offsetof(KZPPrivateDevMode, reserved) ? singleBit : change == 1);
    }

    void TryEveryChangeAt(size_t offset) {
        BYTE record[kWhole];
        std::memcpy(record, valid, kWhole);
        for (int change = 1; change < 256; ++change) {
            if (!IsTried(offset, change))
                continue;
            record[offset] = static_cast<BYTE>(valid[offset] ^ change);
            run.Doing(L"byte %zu changed to 0x%02X", offset, record[offset]);
            Try(record, kWhole);
        }
    }

    // The size that a record states is true, or larger than what a whole one holds: a block that claims more
    // than the driver allocated cannot be told from a good one.
    void TryRandom() {
        Dice& dice = run.Random();
        BYTE record[kLongest];
        size_t bytes = 4 + static_cast<size_t>(dice.Below(static_cast<int>(kLongest - 3)));
        if (dice.OneIn(2)) {
            bytes = std::max(bytes, kWhole);
            std::memset(record, 0, sizeof record);
            std::memcpy(record, valid, kWhole);
            for (int changes = dice.Below(12); changes >= 0; --changes)
                record[dice.Below(dice.OneIn(2) ? 36 : static_cast<int>(kWhole))] =
                    static_cast<BYTE>(dice.Roll());
        } else {
            dice.Fill(record, sizeof record);
        }
        OEM_DMEXTRAHEADER header;
        std::memcpy(&header, record, sizeof header);
        if (bytes < kWhole)
            header.dwSize = static_cast<DWORD>(
                dice.OneIn(2) ? bytes : static_cast<size_t>(dice.Below(static_cast<int>(bytes))));
        if (!dice.OneIn(4))
            header.dwSignature = kzp::kWriterSignature;
        std::memcpy(record, &header, std::min(bytes, sizeof header));
        run.Doing(L"random record of %zu bytes, stated size %lu", bytes, header.dwSize);
        Try(record, bytes);
    }
};

}  // namespace

void Records(Run& run) {
    const kzp::test::ScratchRegistry registry;
    const driverhost::PlugIn plugIn(driverhost::BesideProgram(L"KZPWriterUI.dll"));
    const auto object = plugIn.CreateObject();
    Tester tester(run, object.Get());
    for (run.Begin(static_cast<LONG64>(kWhole) + run.Either(100, 1), 1); run.Next();) {
        if (run.Iteration() < static_cast<LONG64>(kWhole)) {
            tester.TryEveryChangeAt(static_cast<size_t>(run.Iteration()));
            continue;
        }
        for (LONG64 record = 0; record < kRecordsPerIteration; ++record)
            tester.TryRandom();
    }
}

}  // namespace stress

// Device-mode records through IPrintOemUI2::DevMode: random, short and damaged ones, as the driver's block,
// as an application's and as the block written over; all end at an inaccessible page.
#include <algorithm>
#include <cstring>

#include "core/KZPPrivateDevMode.h"
#include "tests/support/EdgeBlock.h"
#include "tests/support/PlugInDll.h"
#include "tools/stress/Stage.h"

namespace kzp::stress {
namespace {

constexpr int kWhole = sizeof(KZPPrivateDevMode);
constexpr int kLongest = 2 * kWhole;
constexpr size_t kWholeBytes = kWhole;

struct Records : testing::Test {
    test::ScratchRegistry
        registry;  // without a printer: with one, processes are looked through at every call
    test::PlugInDll dll;
    IPrintOemUI2* plugIn = dll.Create();
    test::EdgeBlock source{kLongest};
    test::EdgeBlock target{kWhole};
    BYTE valid[kWhole];

    Records() {
        for (int at = 0; at < kWhole; ++at)
            valid[at] = static_cast<BYTE>(at * 7 + 1);
        const OEM_DMEXTRAHEADER header = {kWhole, kWriterSignature, kWriterVersion};
        std::memcpy(valid, &header, sizeof header);
    }
    ~Records() override { plugIn->Release(); }

    // What holds for every result, whatever came in.
    void Operate(DWORD mode, const BYTE* in, size_t inBytes, const BYTE* out) {
        BYTE* const from = source.Last(inBytes);
        auto* const to = reinterpret_cast<KZPPrivateDevMode*>(target.Data());
        std::memcpy(from, in, inBytes);
        std::memcpy(to, out, kWhole);
        const DWORD signature = to->dmOEMExtra.dwSignature;
        OEMDMPARAM param = {};
        param.cbSize = sizeof param;
        param.pOEMDMIn = from;
        param.pOEMDMOut = to;
        EXPECT_EQ(S_OK, plugIn->DevMode(mode, &param));
        const OEM_DMEXTRAHEADER header = to->dmOEMExtra;
        const bool own = header.dwSignature == signature || header.dwSignature == kWriterSignature;
        EXPECT_TRUE(header.dwSize == kWhole && header.dwVersion == kWriterVersion && own) << mode;
        EXPECT_EQ(0, std::memcmp(from, in, inBytes)) << "writes into its source";
        const size_t end = mode == OEMDM_DEFAULT ? offsetof(KZPPrivateDevMode, reserved)
                                                 : std::max(inBytes, offsetof(KZPPrivateDevMode, fMargins));
        EXPECT_TRUE(end >= kWholeBytes ||
                    std::memcmp(reinterpret_cast<BYTE*>(to) + end, out + end, kWhole - end) == 0)
            << "writes behind what it has";
        EXPECT_TRUE(mode == OEMDM_CONVERT || (to->dwOptionSel1 == 0 && to->dwOptionSel2 == 0));
    }

    // The size that a record states is true, or larger than what a whole one holds: a block that claims more
    // than the driver allocated cannot be told from a good one.
    void TryOne(Campaign& run) {
        Dice& dice = run.Random();
        BYTE record[kLongest] = {};
        int bytes = 4 + dice.Below(kLongest - 3);
        if (dice.OneIn(2)) {
            bytes = std::max(bytes, kWhole);
            std::memcpy(record, valid, kWhole);
            for (int changes = dice.Below(12); changes >= 0; --changes)
                record[dice.Below(dice.OneIn(2) ? 36 : kWhole)] = static_cast<BYTE>(dice.Roll());
        } else {
            dice.Fill(record, sizeof record);
        }
        OEM_DMEXTRAHEADER header;
        std::memcpy(&header, record, sizeof header);
        if (bytes < kWhole)
            header.dwSize = static_cast<DWORD>(dice.OneIn(2) ? bytes : dice.Below(bytes));
        if (!dice.OneIn(4))
            header.dwSignature = kWriterSignature;
        const auto length = static_cast<size_t>(bytes);
        std::memcpy(record, &header, std::min(length, sizeof header));
        run.Doing("a record of %d bytes, stated size %lu", bytes, header.dwSize);
        Operate(OEMDM_CONVERT, record, length, valid);
        Operate(OEMDM_MERGE, record, length, valid);
        for (const DWORD mode : {OEMDM_DEFAULT, OEMDM_CONVERT, OEMDM_MERGE}) {
            if (bytes >= kWhole)
                Operate(mode, valid, kWhole, record);
        }
    }
};

TEST_F(Records, OfAnyKindAreTakenWithinTheirBounds) {
    for (Campaign run(IsBrief() ? 3 : 250, 1); run.Next();) {
        for (int record = 0; record < 1000; ++record)
            TryOne(run);
    }
}

}  // namespace
}  // namespace kzp::stress

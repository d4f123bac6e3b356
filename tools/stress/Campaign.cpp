#include "tools/stress/Campaign.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>

#include "tests/support/Counters.h"
#include "tests/support/Watchdog.h"

namespace kzp::stress {

namespace {

// Blocks that the platform's own caches may take meanwhile, a few more under Wine 10 than under Wine 8. What
// leaks with every input or every sheet is far more by the end of a whole campaign.
constexpr size_t kBlocksOfThePlatform = 16;

int g_iteration = 0;
char g_doing[240] = "";

std::uint64_t Number(const char* variable, std::uint64_t otherwise) {
    const char* const text = std::getenv(variable);
    return text ? std::strtoull(text, nullptr, 10) : otherwise;
}

std::uint64_t Seed() {
    static const std::uint64_t seed = Number("KZP_STRESS_SEED", 1);
    return seed;
}

void TellWhere() {
    std::printf("    at iteration %d of seed %llu: %s\n", g_iteration, Seed(), g_doing);
    std::fflush(stdout);
}

LONG WINAPI OnCrash(EXCEPTION_POINTERS* exception) {
    std::printf("    exception %08lX at %p\n", exception->ExceptionRecord->ExceptionCode,
                exception->ExceptionRecord->ExceptionAddress);
    TellWhere();
    return EXCEPTION_EXECUTE_HANDLER;
}

class Failures : public testing::EmptyTestEventListener {
    void OnTestPartResult(const testing::TestPartResult& result) override {
        if (result.failed())
            TellWhere();
    }
};

// Before the first campaign of this program.
void Prepare() {
    [[maybe_unused]] static const bool prepared = [] {
        SetUnhandledExceptionFilter(OnCrash);
        testing::UnitTest::GetInstance()->listeners().Append(new Failures);
        test::atHang = TellWhere;
        return true;
    }();
}

}  // namespace

std::uint64_t Dice::Roll() {
    std::uint64_t z = m_state += 0x9E3779B97F4A7C15;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EB;
    return z ^ (z >> 31);
}

void Dice::Fill(void* block, size_t bytes) {
    std::generate_n(static_cast<BYTE*>(block), bytes, [this] { return static_cast<BYTE>(Roll() >> 32); });
}

bool IsBrief() {
    return !std::getenv("KZP_STRESS");
}

Campaign::Campaign(int iterations, int warmUp)
    : m_next(static_cast<int>(Number("KZP_STRESS_FROM", 0))),
      m_end(iterations),
      m_countAt(std::min(m_next + warmUp, m_end)) {
    Prepare();
}

Campaign::~Campaign() {
    const Stock now = TakeStock();
    EXPECT_LE(now.handles, m_before.handles);
    EXPECT_LE(now.windows, m_before.windows);
    EXPECT_LE(now.blocks, m_before.blocks + kBlocksOfThePlatform);
}

bool Campaign::Next() {
    if (m_next == m_countAt)
        m_before = TakeStock();
    if (m_next >= m_end)
        return false;
    test::RestartWatchdog();
    g_iteration = m_next++;
    m_dice = Dice(Dice(Seed()).Roll() ^ Dice(static_cast<std::uint64_t>(g_iteration)).Roll());
    return true;
}

Campaign::Stock Campaign::TakeStock() {
    return {test::CountHandles(), test::CountWindows(), test::CountHeapBlocks()};
}

void Campaign::Doing(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    _vsnprintf(g_doing, sizeof g_doing - 1, format, arguments);
    va_end(arguments);
}

}  // namespace kzp::stress

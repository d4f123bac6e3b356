#include "tools/stress/Campaign.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>

#include "tests/support/Counters.h"

namespace kzp::stress {

namespace {

// Blocks that the platform's own caches may take meanwhile, a few more under Wine 10 than under Wine 8. What
// leaks with every input or every sheet is far more by the end of a whole campaign.
constexpr size_t kBlocksOfThePlatform = 16;

int g_iteration = 0;
char g_doing[240] = "";

int Number(const char* variable, int otherwise) {
    const char* const text = std::getenv(variable);
    return text ? std::atoi(text) : otherwise;
}

int Seed() {
    return Number("KZP_STRESS_SEED", 1);
}

void TellWhere() {
    std::printf("    at iteration %d of seed %d: %s\n", g_iteration, Seed(), g_doing);
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

}  // namespace

bool IsBrief() {
    return !std::getenv("KZP_STRESS");
}

Campaign::Campaign(int iterations, int warmUp)
    : m_next(Number("KZP_STRESS_FROM", 0)), m_end(iterations), m_countAt(std::min(m_next + warmUp, m_end)) {
    [[maybe_unused]] static const bool prepared = [] {
        SetUnhandledExceptionFilter(OnCrash);
        testing::UnitTest::GetInstance()->listeners().Append(new Failures);
        return true;
    }();
}

Campaign::~Campaign() {
    const Stock now = TakeStock();
    EXPECT_LE(now.handles, m_before.handles);
    EXPECT_LE(now.blocks, m_before.blocks + kBlocksOfThePlatform);
}

bool Campaign::Next() {
    if (m_next == m_countAt)
        m_before = TakeStock();
    if (m_next >= m_end)
        return false;
    g_iteration = m_next++;
    m_dice = Dice(static_cast<std::uint64_t>(Seed()) << 32 | static_cast<std::uint64_t>(g_iteration));
    return true;
}

Campaign::Stock Campaign::TakeStock() {
    return {test::CountHandles(), test::CountHeapBlocks()};
}

void Campaign::Doing(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    _vsnprintf(g_doing, sizeof g_doing - 1, format, arguments);
    va_end(arguments);
}

}  // namespace kzp::stress

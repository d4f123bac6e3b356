// What the campaigns share: iterations with dice that come again with the same seed, the line that says what
// was being tried when something broke, and the counters of growth.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdint>

namespace kzp::stress {

class Dice {
  public:
    explicit Dice(std::uint64_t seed) : m_state(seed) {}

    std::uint64_t Roll();
    int Below(int count) { return static_cast<int>(Roll() % static_cast<std::uint64_t>(count)); }
    bool OneIn(int count) { return Below(count) == 0; }
    template <class T, size_t count>
    const T& OneOf(const T (&list)[count]) {
        return list[Below(static_cast<int>(count))];
    }
    void Fill(void* block, size_t bytes);

  private:
    std::uint64_t m_state;
};

// True in the short form that belongs to the tests (KZP_STRESS is not set).
bool IsBrief();

// for (Campaign run(60, 3); run.Next();) ... Handles, windows and heap blocks are counted behind the warm-up
// and again behind the last iteration; but for a few heap blocks nothing more should be alive then.
// KZP_STRESS_SEED is the seed, KZP_STRESS_FROM the first iteration: with both, a campaign goes on from where
// something broke.
class Campaign {
  public:
    Campaign(int iterations, int warmUp);
    ~Campaign();
    Campaign(const Campaign&) = delete;
    Campaign& operator=(const Campaign&) = delete;

    bool Next();
    int Iteration() const { return m_next - 1; }
    Dice& Random() { return m_dice; }

    // Printed with a failure, a crash or a hang.
    void Doing(const char* format, ...);

  private:
    struct Stock {
        size_t handles, windows, blocks;
    };
    static Stock TakeStock();

    int m_next;
    int m_end;
    int m_countAt;
    Dice m_dice{0};
    Stock m_before = {};
};

}  // namespace kzp::stress

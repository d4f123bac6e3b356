// What the campaigns share: iterations with dice that come again with the same seed, the line that says what
// was being tried when something broke, and the counters of growth.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <random>

namespace kzp::stress {

class Dice {
  public:
    explicit Dice(std::uint64_t seed) : m_engine(seed) {}

    int Below(int count) { return static_cast<int>(m_engine() % static_cast<std::uint64_t>(count)); }
    bool OneIn(int count) { return Below(count) == 0; }
    template <class List>
    auto& OneOf(List& list) {
        return list[static_cast<size_t>(Below(static_cast<int>(std::size(list))))];
    }

  private:
    std::mt19937_64 m_engine;
};

// True in the short form that belongs to the tests (KZP_STRESS is not set).
bool IsBrief();

// for (Campaign run(60, 3); run.Next();) ... Handles and heap blocks are counted behind the warm-up
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

    // Printed with a failure or a crash.
    void Doing(const char* format, ...);

  private:
    struct Stock {
        size_t handles, blocks;
    };
    static Stock TakeStock();

    int m_next;
    int m_end;
    int m_countAt;
    Dice m_dice{0};
    Stock m_before = {};
};

}  // namespace kzp::stress

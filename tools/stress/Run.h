// One campaign as its own code sees it: iterations with dice of their own, expectations, and leak counters.
#pragma once

#include <cstdint>

#include "tools/stress/Dice.h"
#include "tools/stress/Ledger.h"

namespace stress {

struct Plan {
    std::uint64_t seed = 1;
    bool brief = false;        // the short form that belongs to the tests
    LONG64 from = 0;           // first iteration
    LONG64 count = MAXLONG64;  // at most so many
};

class Run {
  public:
    Run(Ledger& ledger, const Plan& plan) : m_ledger(ledger), m_plan(plan) {}

    bool Brief() const { return m_plan.brief; }
    LONG64 Either(LONG64 whole, LONG64 brief) const { return m_plan.brief ? brief : whole; }

    // for (run.Begin(total, warmUp); run.Next();) ... The counters are read after `warmUp` iterations and
    // again behind the last; both times exactly what lived before Begin should be alive.
    void Begin(LONG64 total, LONG64 warmUp);
    bool Next();
    LONG64 Iteration() const { return m_ledger.iteration; }
    Dice& Random() { return m_dice; }  // depends on the seed and the iteration alone

    void Doing(const wchar_t* format, ...);    // for the report of a crash
    void Figures(const wchar_t* format, ...);  // for the table
    void Tried(LONG64 inputs = 1) { m_ledger.inputs += inputs; }
    bool Expect(bool truth, const wchar_t* format, ...);

  private:
    void TakeStock(bool first);

    Ledger& m_ledger;
    Plan m_plan;
    Dice m_dice;
    LONG64 m_next = 0;
    LONG64 m_end = 0;
    LONG64 m_untilStock = 0;
    LONG m_handles = 0, m_windows = 0, m_blocks = 0;
};

}  // namespace stress

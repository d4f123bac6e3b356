#include "tools/stress/Run.h"

#include <algorithm>
#include <cstdarg>
#include <cwchar>

#include "tests/support/Counters.h"

namespace stress {

namespace {

void Print(wchar_t (&text)[kTextCharacters], const wchar_t* format, va_list arguments) {
    _vsnwprintf(text, kTextCharacters - 1, format, arguments);
    text[kTextCharacters - 1] = L'\0';
}

}  // namespace

Ledger* OpenLedger(const wchar_t* name) {
    // Never closed: both processes keep it to their ends.
    const HANDLE mapping =
        CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, sizeof(Ledger), name);
    return mapping ? static_cast<Ledger*>(MapViewOfFile(mapping, FILE_MAP_ALL_ACCESS, 0, 0, sizeof(Ledger)))
                   : nullptr;
}

void Run::Begin(LONG64 total, LONG64 warmUp) {
    m_ledger.total = total;
    m_next = m_plan.from;
    m_end = m_plan.count > total - m_plan.from ? total : m_plan.from + m_plan.count;
    m_untilStock = std::clamp<LONG64>(warmUp, 0, std::max<LONG64>(m_end - m_next, 0));
}

bool Run::Next() {
    if (m_untilStock-- == 0)
        TakeStock(true);
    if (m_next >= m_end) {
        TakeStock(false);
        return false;
    }
    m_ledger.iteration = m_next;
    m_dice = Dice(Dice(m_plan.seed).Roll() ^ Dice(static_cast<std::uint64_t>(m_next)).Roll());
    ++m_next;
    return true;
}

void Run::TakeStock(bool first) {
    const auto handles = static_cast<LONG>(kzp::test::CountHandles());
    const auto windows = static_cast<LONG>(kzp::test::CountWindows());
    const auto blocks = static_cast<LONG>(kzp::test::CountHeapBlocks());
    if (first) {
        m_handles = handles;
        m_windows = windows;
        m_blocks = blocks;
    }
    m_ledger.handles = handles - m_handles;
    m_ledger.windows = windows - m_windows;
    m_ledger.blocks = blocks - m_blocks;
}

void Run::Doing(const wchar_t* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    Print(m_ledger.doing, format, arguments);
    va_end(arguments);
}

void Run::Figures(const wchar_t* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    Print(m_ledger.figures, format, arguments);
    va_end(arguments);
}

bool Run::Expect(bool truth, const wchar_t* format, ...) {
    if (truth)
        return true;
    const LONG number = m_ledger.failures++;
    if (number < kKeptFailures) {
        wchar_t what[kTextCharacters];
        va_list arguments;
        va_start(arguments, format);
        Print(what, format, arguments);
        va_end(arguments);
        _snwprintf(m_ledger.texts[number], kTextCharacters - 1, L"iteration %lld: %ls", m_ledger.iteration,
                   what);
    }
    return false;
}

}  // namespace stress

// What a campaign's process tells the one that watches it, in a mapping that both hold.
#pragma once

#include <windows.h>

namespace stress {

inline constexpr int kKeptFailures = 12;
inline constexpr int kTextCharacters = 240;

struct Ledger {
    volatile LONG64 iteration;       // running, or the last one
    LONG64 total;                    // iterations of the whole campaign
    LONG64 inputs;                   // what was tried, in the campaign's own measure
    LONG failures;                   // broken expectations
    LONG finished;                   // the campaign came to its end
    LONG handles, windows, blocks;   // growth between the end of the warm-up and the end
    wchar_t doing[kTextCharacters];  // what is being tried
    wchar_t figures[kTextCharacters];
    wchar_t texts[kKeptFailures][kTextCharacters];
};

// The mapping of this name, created when it does not exist. It lives as long as one of its processes.
Ledger* OpenLedger(const wchar_t* name);

}  // namespace stress

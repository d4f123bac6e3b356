// The campaigns against the delivered plug-in, one process each.
#pragma once

#include <string>

#include "tools/stress/Run.h"

namespace stress {

void Records(Run& run);    // device-mode records: changed, random, mutated
void Lifetimes(Run& run);  // load, create, use, release, unload
void Sheets(Run& run);     // document sheets with edits, OK and Cancel
void Messages(Run& run);   // random messages to each page
void Values(Run& run);     // registry values of every type and length
void Texts(Run& run);      // resource modules: none, cut short, over-long texts
void Faults(Run& run);     // each platform call refused once
void Kills(Run& run);      // a process ended in the middle of a commit
void Together(Run& run);   // eight processes at once

// What the last two start: this program in another role, in the scratch registry of process `owner`.
// Answers the exit status.
int CommitForEver(DWORD owner);
int WorkAlongside(DWORD owner, std::uint64_t seed);

struct Campaign {
    const wchar_t* name;
    void (*play)(Run&);
    const wchar_t* measure;  // what its inputs are
    DWORD patience;          // seconds without a new iteration that count as hanging
};

inline constexpr Campaign kCampaigns[] = {
    {L"records", Records, L"records through three operations", 60},
    {L"lifetimes", Lifetimes, L"load/create/use/release/unload cycles", 60},
    {L"values", Values, L"registry values read", 120},
    {L"texts", Texts, L"resource modules", 120},
    {L"faults", Faults, L"refused platform calls", 240},
    {L"sheets", Sheets, L"sheets", 120},
    {L"messages", Messages, L"messages", 240},
    {L"kills", Kills, L"processes ended while they commit", 120},
    {L"together", Together, L"processes, eight at once", 240},
};

}  // namespace stress

// stress.exe: what the delivered plug-in survives. Every campaign runs in a process of its own, so that a
// crash has a name: campaign, seed and iteration.
#include <windows.h>

#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include "tools/driverhost/Text.h"
#include "tools/stress/Watch.h"

namespace {

using namespace stress;
using driverhost::Format;
using driverhost::Say;

constexpr wchar_t kUsage[] =
    LR"(stress [--short] [--seed N] [--only CAMPAIGN] [--from ITERATION] [--count ITERATIONS]

Plays campaigns against KZPWriterUI.dll beside this program, prints what was tried and what became of it, and
ends with 0 only when nothing crashed, hung, leaked or broke an expectation. Campaigns:
)";

struct Order {
    Plan plan;
    std::wstring only;
    std::wstring play;  // the campaign that this process itself plays
    std::wstring ledger;
    std::wstring role;  // what a campaign had this process started for
    DWORD owner = 0;
};

std::optional<Order> Parse(const std::vector<std::wstring>& words) {
    Order order;
    for (size_t at = 0; at < words.size(); ++at) {
        if (words[at] == L"--short") {
            order.plan.brief = true;
            continue;
        }
        if (at + 1 == words.size())
            return std::nullopt;
        const std::wstring& option = words[at];
        const std::wstring& value = words[++at];
        const auto number = std::wcstoull(value.c_str(), nullptr, 10);
        if (option == L"--seed")
            order.plan.seed = number;
        else if (option == L"--from")
            order.plan.from = static_cast<LONG64>(number);
        else if (option == L"--count")
            order.plan.count = static_cast<LONG64>(number);
        else if (option == L"--only")
            order.only = value;
        else if (option == L"--play")
            order.play = value;
        else if (option == L"--ledger")
            order.ledger = value;
        else if (option == L"--role")
            order.role = value;
        else if (option == L"--owner")
            order.owner = static_cast<DWORD>(number);
        else
            return std::nullopt;
    }
    return order;
}

int PlayHere(const Order& order) {
    Ledger* const ledger = OpenLedger(order.ledger.c_str());
    if (!ledger)
        return 1;
    Run run(*ledger, order.plan);
    for (const Campaign& campaign : kCampaigns) {
        if (order.play != campaign.name)
            continue;
        try {
            campaign.play(run);
        } catch (const std::exception& error) {
            run.Expect(false, L"the campaign ends with an error: %hs", error.what());
        }
    }
    ledger->finished = TRUE;
    return 0;
}

int PlayAll(const Order& order) {
    bool clean = true;
    std::wstring table =
        Format(L"\n%-10ls %9ls %7ls %5ls %8ls %7ls %7ls %6ls %7ls\n", L"campaign", L"inputs", L"crashes",
               L"hangs", L"failures", L"handles", L"windows", L"blocks", L"seconds");
    for (const Campaign& campaign : kCampaigns) {
        if (!order.only.empty() && order.only != campaign.name)
            continue;
        Say(Format(L"%ls", campaign.name));
        const Outcome result = Watch(campaign, order.plan);
        clean = clean && result.Clean();
        table += Format(L"%-10ls %9lld %7ld %5ld %8ld %+7ld %+7ld %+6ld %7.1f  %ls\n", campaign.name,
                        result.inputs, result.crashes, result.hangs, result.failures, result.handles,
                        result.windows, result.blocks, result.seconds,
                        result.figures.empty() ? campaign.measure : result.figures.c_str());
    }
    Say(table +
        Format(L"\nseed %llu: %ls", order.plan.seed, clean ? L"everything held" : L"SOMETHING BROKE"));
    return clean ? 0 : 1;
}

}  // namespace

int main() {
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
    const std::vector<std::wstring> words = driverhost::Words(GetCommandLineW());
    const auto order = Parse({words.begin() + 1, words.end()});
    if (!order) {
        Say(kUsage);
        for (const Campaign& campaign : kCampaigns)
            Say(Format(L"  %-10ls %ls", campaign.name, campaign.measure));
        return 2;
    }
    if (order->role == L"commit")
        return CommitForEver(order->owner);
    if (order->role == L"work")
        return WorkAlongside(order->owner, order->plan.seed);
    return order->play.empty() ? PlayAll(*order) : PlayHere(*order);
}

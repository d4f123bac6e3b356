// The printed forms of a state: by section, and as a table of before and after.
#include <algorithm>

#include "tools/driverhost/State.h"
#include "tools/driverhost/Text.h"

namespace driverhost {

namespace {

const StateRow* FindRow(const State& state, const StateRow& wanted) {
    const auto found = std::find_if(state.begin(), state.end(), [&](const StateRow& row) {
        return row.section == wanted.section && row.name == wanted.name;
    });
    return found == state.end() ? nullptr : &*found;
}

std::wstring Padded(std::wstring text, size_t width) {
    if (text.size() < width)
        text.resize(width, L' ');
    return text;
}

struct Change {
    std::wstring name;
    std::wstring before;
    std::wstring after;
};

constexpr wchar_t kAbsent[] = L"-";

std::vector<Change> Compare(const State& before, const State& after) {
    std::vector<Change> changes;
    const auto title = [](const StateRow& row) { return row.section + L": " + row.name; };
    for (const StateRow& row : before) {
        const StateRow* const now = FindRow(after, row);
        if (!now || now->value != row.value)
            changes.push_back({title(row), row.value, now ? now->value : kAbsent});
    }
    for (const StateRow& row : after) {
        if (!FindRow(before, row))
            changes.push_back({title(row), kAbsent, row.value});
    }
    return changes;
}

}  // namespace

void PrintState(const State& state, const std::wstring& section) {
    size_t width = 0;
    for (const StateRow& row : state)
        width = std::max(width, row.name.size());
    std::wstring heading;
    for (const StateRow& row : state) {
        if (row.section.compare(0, section.size(), section) != 0)
            continue;
        if (row.section != heading) {
            heading = row.section;
            Say(L"[" + heading + L"]");
        }
        Say(L"  " + Padded(row.name, width) + L"  " + row.value);
    }
}

int PrintChanges(const State& before, const State& after) {
    const std::vector<Change> changes = Compare(before, after);
    if (changes.empty()) {
        Say(L"nothing changed");
        return 0;
    }
    size_t nameWidth = 0;
    size_t beforeWidth = 6;
    for (const Change& change : changes) {
        nameWidth = std::max(nameWidth, change.name.size());
        beforeWidth = std::max(beforeWidth, change.before.size());
    }
    beforeWidth = std::min<size_t>(beforeWidth, 60);
    Say(Padded(L"changed", nameWidth) + L" | " + Padded(L"before", beforeWidth) + L" | after");
    Say(std::wstring(nameWidth, L'-') + L"-+-" + std::wstring(beforeWidth, L'-') + L"-+-" +
        std::wstring(20, L'-'));
    for (const Change& change : changes)
        Say(Padded(change.name, nameWidth) + L" | " + Padded(change.before, beforeWidth) + L" | " +
            change.after);
    return static_cast<int>(changes.size());
}

}  // namespace driverhost

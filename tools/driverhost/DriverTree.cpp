#include "tools/driverhost/DriverTree.h"

#include <algorithm>
#include <utility>

#include "tools/driverhost/Text.h"

namespace driverhost {

void DriverTree::Add(Feature feature) {
    Storage& own = m_storage.emplace_back();
    own.feature = std::move(feature);
    for (std::wstring& option : own.feature.options)
        own.params.push_back({.cbSize = sizeof(OPTPARAM), .pData = option.data()});
    // An up-down item has two parameters: its postfix, and its limits.
    if (own.feature.type == TVOT_UDARROW)
        own.params.push_back({.cbSize = sizeof(OPTPARAM), .IconID = 1, .lParam = 9999});
    own.type = {.cbSize = sizeof own.type,
                .Type = own.feature.type,
                .Count = static_cast<WORD>(own.params.size()),
                .pOptParam = own.params.data()};
    own.data = {.dwSize = sizeof own.data,
                .dwItemID = m_items.size(),
                .pKeyWordName = own.feature.keyword.empty() ? nullptr : own.feature.keyword.data()};
    m_items.push_back({.cbSize = sizeof(OPTITEM),
                       .Level = own.feature.level,
                       .UserData = reinterpret_cast<ULONG_PTR>(&own.data),
                       .pName = own.feature.name.data(),
                       .Sel = own.feature.selection,
                       .pOptType = own.params.empty() ? nullptr : &own.type,
                       .DMPubID = own.feature.dmPub});
}

void DriverTree::KeepFirst(size_t count) {
    m_items.resize(std::min(count, m_items.size()));
}

void DriverTree::Remove(PCSTR keyword) {
    std::erase_if(m_items, [&](const OPTITEM& item) { return KeywordOf(item) == keyword; });
}

POPTITEM DriverTree::Find(PCSTR keyword) {
    const auto found = std::ranges::find(m_items, keyword, KeywordOf);
    return found == m_items.end() ? nullptr : &*found;
}

int DriverTree::PositionOf(const void* item) const {
    const auto found =
        std::ranges::find(m_items, item, [](const OPTITEM& own) -> const void* { return &own; });
    return found == m_items.end() ? -1 : static_cast<int>(found - m_items.begin());
}

std::string KeywordOf(const OPTITEM& item) {
    const auto* const data = reinterpret_cast<const USERDATA*>(item.UserData);
    return data && data->pKeyWordName ? data->pKeyWordName : "";
}

bool IsHidden(const OPTITEM& item) {
    return (item.Flags & OPTIF_HIDE) != 0;
}

std::wstring SelectedText(const OPTITEM& item) {
    if (!item.pOptType)
        return {};
    if (item.pOptType->Type == TVOT_UDARROW)
        return std::to_wstring(item.Sel);
    const bool isOption = item.Sel >= 0 && item.Sel < item.pOptType->Count;
    const PCWSTR name = isOption ? item.pOptType->pOptParam[item.Sel].pData : nullptr;
    return IS_INTRESOURCE(name) ? Format(L"(%ld?)", item.Sel) : name;
}

}  // namespace driverhost

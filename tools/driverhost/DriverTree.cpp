#include "tools/driverhost/DriverTree.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "tools/driverhost/Text.h"

namespace driverhost {

namespace {

OPTPARAM MakeParam(std::wstring& name) {
    OPTPARAM param = {};
    param.cbSize = sizeof param;
    param.pData = name.data();
    return param;
}

// An up-down item has two parameters: its postfix, and its limits.
std::vector<OPTPARAM> MakeParams(Feature& feature) {
    std::vector<OPTPARAM> params;
    for (std::wstring& option : feature.options)
        params.push_back(MakeParam(option));
    if (feature.type == TVOT_UDARROW && params.size() == 2) {
        params[1].pData = nullptr;
        params[1].IconID = 1;
        params[1].lParam = 9999;
    }
    return params;
}

}  // namespace

DriverTree& DriverTree::Add(Feature feature) {
    Storage& own = m_storage.emplace_back();
    own.feature = std::move(feature);
    own.params = MakeParams(own.feature);

    own.type = {};
    own.type.cbSize = sizeof own.type;
    own.type.Type = own.feature.type;
    own.type.Count = static_cast<WORD>(own.params.size());
    own.type.pOptParam = own.params.data();

    own.data = {};
    own.data.dwSize = sizeof own.data;
    own.data.dwItemID = m_items.size();
    own.data.pKeyWordName = own.feature.keyword.empty() ? nullptr : own.feature.keyword.data();

    OPTITEM item = {};
    item.cbSize = sizeof item;
    item.Level = own.feature.level;
    item.Flags = own.feature.flags;
    item.UserData = reinterpret_cast<ULONG_PTR>(&own.data);
    item.pName = own.feature.name.data();
    item.Sel = own.feature.selection;
    item.pOptType = own.params.empty() ? nullptr : &own.type;
    item.DMPubID = own.feature.dmPub;
    m_items.push_back(item);
    return *this;
}

DriverTree& DriverTree::KeepFirst(size_t count) {
    m_items.resize(std::min(count, m_items.size()));
    return *this;
}

DriverTree& DriverTree::Remove(PCSTR keyword) {
    m_items.erase(m_items.begin() + static_cast<std::ptrdiff_t>(At(keyword)));
    return *this;
}

DriverTree& DriverTree::DropOptions(PCSTR keyword) {
    OPTTYPE& type = *m_items[At(keyword)].pOptType;
    type.Count = 0;
    type.pOptParam = nullptr;
    return *this;
}

DriverTree& DriverTree::DropType(PCSTR keyword) {
    m_items[At(keyword)].pOptType = nullptr;
    return *this;
}

DriverTree& DriverTree::DropUserData(PCSTR keyword) {
    m_items[At(keyword)].UserData = 0;
    return *this;
}

POPTITEM DriverTree::Find(PCSTR keyword) {
    return const_cast<POPTITEM>(std::as_const(*this).Find(keyword));
}

const OPTITEM* DriverTree::Find(PCSTR keyword) const {
    const auto found = std::find_if(m_items.begin(), m_items.end(),
                                    [&](const OPTITEM& item) { return KeywordOf(item) == keyword; });
    return found == m_items.end() ? nullptr : &*found;
}

int DriverTree::PositionOf(const void* item) const {
    for (size_t position = 0; position < m_items.size(); ++position) {
        if (&m_items[position] == item)
            return static_cast<int>(position);
    }
    return -1;
}

size_t DriverTree::At(PCSTR keyword) const {
    const OPTITEM* const item = Find(keyword);
    if (!item)
        throw HostError{Format(L"the driver has no feature \"%hs\"", keyword)};
    return static_cast<size_t>(item - m_items.data());
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
        return Format(L"%ld", item.Sel);
    if (item.Sel < 0 || item.Sel >= item.pOptType->Count)
        return Format(L"(%ld?)", item.Sel);
    const PCWSTR name = item.pOptType->pOptParam[item.Sel].pData;
    return IS_INTRESOURCE(name) ? Format(L"(%ld?)", item.Sel) : name;
}

}  // namespace driverhost

// The core driver's option items in the layout that a plug-in sees: OPTITEM, OPTTYPE, OPTPARAM, and USERDATA
// with the feature's ANSI keyword.
#pragma once

#include <deque>
#include <string>
#include <vector>

#include "driverkit/printoem.h"
#include "tools/driverhost/SessionMemory.h"

namespace driverhost {

struct Feature {
    std::string keyword;  // empty: the item has user data without a keyword
    std::wstring name;
    BYTE dmPub = DMPUB_NONE;            // DMPUB_*
    BYTE type = TVOT_LISTBOX;           // TVOT_*
    std::vector<std::wstring> options;  // empty: the item has no type (a heading)
    LONG selection = 0;
    BYTE level = 1;
};

class DriverTree {
  public:
    DriverTree() { m_items.reserve(kMostItems); }  // no items
    DriverTree(DriverTree&&) = default;
    DriverTree& operator=(DriverTree&&) = default;

    // The document items of the printer's driver. `helpItemName` names the second-level item.
    static DriverTree Standard(const std::wstring& helpItemName);
    // The items of the printer itself, which "Printer properties" shows.
    static DriverTree OfPrinter();
    // The one item that the plug-in's part of the tree holds: where the output goes.
    static DriverTree PlugInItems();

    // Building; pointers to items are good once nothing is added or removed any more.
    void Add(Feature feature);
    void KeepFirst(size_t count);
    void Remove(PCSTR keyword);

    // The array that a plug-in gets; null for an empty tree.
    POPTITEM Items() { return m_items.empty() ? nullptr : m_items.data(); }
    DWORD Count() const { return static_cast<DWORD>(m_items.size()); }
    const SessionVector<OPTITEM>& All() const { return m_items; }

    POPTITEM Find(PCSTR keyword);            // by whole keyword; null when there is none
    int PositionOf(const void* item) const;  // -1 for a foreign item

  private:
    static constexpr size_t kMostItems = 32;  // more are taken, too, in new pages
    struct Storage {
        Feature feature;
        std::vector<OPTPARAM> params;
        OPTTYPE type;
        USERDATA data;
    };
    std::deque<Storage> m_storage;  // a deque: elements stay where they are
    SessionVector<OPTITEM> m_items;
};

std::string KeywordOf(const OPTITEM& item);
bool IsHidden(const OPTITEM& item);
// "A4", the number of an up-down item, or "(12?)" for a selection without a named option.
std::wstring SelectedText(const OPTITEM& item);

}  // namespace driverhost

#include "settings/SheetState.h"

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

#include "support/Lock.h"

namespace kzp {

namespace {

// Sheets that nobody uses and that stay listed; a driver presents one and opens it right away.
constexpr std::ptrdiff_t kIdleSheets = 8;

// By what the driver's blocks tell of their sheet; null is what they do not tell.
struct Identity {
    const void* record = nullptr;
    const void* uiObject = nullptr;
};

enum class Kinship { kOther, kUnknown, kSame };

Kinship Compare(const Identity& left, const Identity& right) {
    const auto compare = [](const void* a, const void* b) {
        return !a || !b ? Kinship::kUnknown : a == b ? Kinship::kSame : Kinship::kOther;
    };
    const Kinship records = compare(left.record, right.record);
    const Kinship objects = compare(left.uiObject, right.uiObject);
    if (records == Kinship::kUnknown)
        return objects;
    return records == Kinship::kOther && objects == Kinship::kSame ? Kinship::kUnknown : records;
}

Identity IdentityOf(const OEMCUIPPARAM& block) {
    return {block.pOEMDM, block.poemuiobj};
}

Identity IdentityOf(const PROPSHEETUI_INFO& info) {
    const auto* const param = reinterpret_cast<const OEMUIPSPARAM*>(info.lParamInit);
    if (!param || param->cbSize < sizeof *param)
        return {};
    return {param->pOEMDM, param->poemuiobj};
}

// A sheet with what the list knows of it.
struct Sheet final : SheetState {
    Identity identity;
    DWORD thread = GetCurrentThreadId();
    LONG uses = 0;
    bool presented = false;
    bool pagesAdded = false;
    bool pagesShown = false;
    bool destroyed = false;
};

using Sheets = std::vector<std::unique_ptr<Sheet>>;

struct Shared {
    Sheets sheets;  // the one presented last is the last
    LPARAM lastPageParam = 0;

    // What the latest closed sheet left.
    PendingSettings pending;
    DWORD unit = kInches;
    DWORD orientation = 1;
    LONG spinDirection = 0;
};

// What is left in it goes when the plug-in is unloaded.
Shared g_shared;
constinit SRWLOCK g_lock = SRWLOCK_INIT;

// What follows is called under the lock.

template <class Condition>
Sheets::iterator FindLatest(Condition&& condition) {
    const auto found = std::find_if(g_shared.sheets.rbegin(), g_shared.sheets.rend(), [&](const auto& sheet) {
        return !sheet->destroyed && condition(*sheet);
    });
    return found == g_shared.sheets.rend() ? g_shared.sheets.end() : std::prev(found.base());
}

void DropOldestIdle() {
    const auto idle = [](const auto& sheet) { return sheet->uses == 0; };
    if (std::count_if(g_shared.sheets.begin(), g_shared.sheets.end(), idle) >= kIdleSheets)
        g_shared.sheets.erase(std::find_if(g_shared.sheets.begin(), g_shared.sheets.end(), idle));
}

Sheet& AddSheet() {
    DropOldestIdle();
    auto sheet = std::make_unique<Sheet>();
    sheet->PageParam = ++g_shared.lastPageParam;
    sheet->Pending = g_shared.pending;
    sheet->Measures.unit = g_shared.unit;
    sheet->Measures.orientation = g_shared.orientation;
    sheet->Measures.lastSpinDirection = g_shared.spinDirection;
    g_shared.sheets.push_back(std::move(sheet));
    return *g_shared.sheets.back();
}

Sheet& AddPresentedSheet(POEMCUIPPARAM block) {
    Sheet& sheet = AddSheet();
    sheet.presented = true;
    sheet.CurrentUIParam = block;
    sheet.identity = IdentityOf(*block);
    return sheet;
}

// Nothing of it is open, and it is not on its way from its pages' handles to their windows.
bool IsOver(const Sheet& sheet) {
    return sheet.uses == 0 && sheet.pagesShown == sheet.pagesAdded;
}

SheetUse Use(Sheet& sheet) {
    ++sheet.uses;
    return SheetUse(&sheet);
}

}  // namespace

void SheetUseTraits::Close(Type state) {
    const Lock lock(g_lock);
    auto* const sheet = static_cast<Sheet*>(state);
    if (--sheet->uses == 0 && sheet->destroyed)
        std::erase_if(g_shared.sheets, [sheet](const auto& listed) { return listed.get() == sheet; });
}

SheetUse PresentSheet(POEMCUIPPARAM block) {
    const Lock lock(g_lock);
    auto found = FindLatest([block](const Sheet& sheet) { return sheet.CurrentUIParam == block; });
    if (found == g_shared.sheets.end())
        // Presented at another address before. An open sheet is sure to be the same only by its record.
        found = FindLatest([&](const Sheet& sheet) {
            return Compare(sheet.identity, IdentityOf(*block)) == Kinship::kSame &&
                   (sheet.uses == 0 || (block->pOEMDM && sheet.identity.record));
        });
    if (found != g_shared.sheets.end() && IsOver(**found)) {
        g_shared.sheets.erase(found);
        found = g_shared.sheets.end();
    }
    if (found == g_shared.sheets.end())
        return Use(AddPresentedSheet(block));
    std::rotate(found, std::next(found), g_shared.sheets.end());
    Sheet& sheet = *g_shared.sheets.back();
    sheet.thread = GetCurrentThreadId();
    sheet.presented = true;
    sheet.CurrentUIParam = block;
    sheet.identity = IdentityOf(*block);
    return Use(sheet);
}

SheetUse AddPagesToSheet(const PROPSHEETUI_INFO& info) {
    const Identity identity = IdentityOf(info);
    const Lock lock(g_lock);
    auto found = FindLatest([&](const Sheet& sheet) {
        return sheet.presented && !sheet.pagesShown && Compare(sheet.identity, identity) == Kinship::kSame;
    });
    if (found == g_shared.sheets.end())
        found = FindLatest([&](const Sheet& sheet) {
            return sheet.presented && !sheet.pagesShown && sheet.thread == GetCurrentThreadId() &&
                   Compare(sheet.identity, identity) == Kinship::kUnknown;
        });
    Sheet& sheet = found != g_shared.sheets.end() ? **found : AddSheet();
    if (!sheet.presented)
        sheet.identity = identity;
    sheet.pagesAdded = true;
    sheet.SheetInfo = info;
    return Use(sheet);
}

SheetUse SheetOfBlock(POEMCUIPPARAM block) {
    const Lock lock(g_lock);
    auto found = FindLatest([block](const Sheet& sheet) { return sheet.CurrentUIParam == block; });
    if (found == g_shared.sheets.end())
        found = FindLatest([&](const Sheet& sheet) {
            return Compare(sheet.identity, IdentityOf(*block)) == Kinship::kSame;
        });
    return Use(found != g_shared.sheets.end() ? **found : AddPresentedSheet(block));
}

SheetUse SheetOfPageParam(LPARAM pageParam) {
    const Lock lock(g_lock);
    const auto found = FindLatest([&](const Sheet& sheet) { return sheet.PageParam == pageParam; });
    Sheet& sheet = found != g_shared.sheets.end() ? **found : AddSheet();
    sheet.pagesAdded = sheet.pagesShown = true;
    sheet.thread = GetCurrentThreadId();
    return Use(sheet);
}

SheetUse UseSheet(SheetState& sheet) {
    const Lock lock(g_lock);
    return Use(static_cast<Sheet&>(sheet));
}

void DestroySheet(const PROPSHEETUI_INFO& info) {
    const Lock lock(g_lock);
    const auto found = FindLatest([&](const Sheet& sheet) {
        return sheet.pagesAdded && sheet.SheetInfo.hComPropSheet == info.hComPropSheet &&
               sheet.SheetInfo.lParamInit == info.lParamInit;
    });
    if (found == g_shared.sheets.end())
        return;
    Sheet& sheet = **found;
    sheet.destroyed = true;
    sheet.CurrentUIParam = nullptr;
    sheet.DriverUI = nullptr;
    sheet.SheetInfo = {};
    if (sheet.uses == 0)
        g_shared.sheets.erase(found);
}

void LeaveToNextSheet(const SheetState& sheet) {
    PendingSettings pending = sheet.Pending;
    const Lock lock(g_lock);
    std::swap(g_shared.pending, pending);
    g_shared.unit = sheet.Measures.unit;
    g_shared.orientation = sheet.Measures.orientation;
    g_shared.spinDirection = sheet.Measures.lastSpinDirection;
}

}  // namespace kzp

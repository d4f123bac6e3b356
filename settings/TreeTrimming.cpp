#include "settings/TreeTrimming.h"

#include <cwchar>
#include <span>

#include "core/Module.h"
#include "help/ItemHelp.h"
#include "help/ResourceModule.h"
#include "resources/resource.h"

namespace kzp {

namespace {

constexpr DWORD kHideFlags = OPTIF_HIDE | OPTIF_EXT_HIDE;
constexpr BYTE kHelpItemLevel = 2;
constexpr DWORD kHelpItemIndex = 15001;

bool MayCarryHelp(const OPTITEM& item) {
    return item.Level == kHelpItemLevel && !IS_INTRESOURCE(item.pName);
}

}  // namespace

bool IsReplacedItem(const OPTITEM& item) {
    switch (item.DMPubID) {
        case DMPUB_ORIENTATION:
        case DMPUB_COLOR:
        case DMPUB_COPIES_COLLATE:
        case DMPUB_NUP:
        case DMPUB_PAGEORDER:
            return true;
        case DMPUB_NONE:
            return item.pOptType && item.pOptType->Type == TVOT_2STATES;
        default:
            return false;
    }
}

void TrimDriverTree(const OEMCUIPPARAM& param) {
    if (!param.pDrvOptItems)
        return;
    PWSTR helpItemName = nullptr;
    for (OPTITEM& item : std::span(param.pDrvOptItems, param.cDrvOptItems)) {
        if (IsReplacedItem(item))
            item.Flags |= kHideFlags;
        if (!MayCarryHelp(item))
            continue;
        if (!helpItemName)
            helpItemName = LoadResString(param.hOEMHeap, g_hInstance, IDS_HELP_ITEM_NAME);
        if (helpItemName && std::wcscmp(item.pName, helpItemName) == 0)
            SetItemHelp(param.hPrinter, param.hOEMHeap, g_hInstance, &item, kHelpItemIndex,
                        IDS_ITEM_HELP_FILE);
    }
    if (helpItemName)
        HeapFree(param.hOEMHeap, 0, helpItemName);
}

}  // namespace kzp

#include "pages/DriverOptions.h"

#include <cstring>

#include "core/Module.h"

namespace kzp {

HRESULT FindDriverOption(POEMCUIPPARAM param, PCSTR keyword, POPTITEM* item) {
    if (!param || !keyword || !item)
        return E_POINTER;
    *item = nullptr;
    if (!param->pDrvOptItems)
        return E_PENDING;
    HRESULT result = S_OK;
    for (OPTITEM& candidate : std::span(param->pDrvOptItems, param->cDrvOptItems)) {
        const auto* const data = reinterpret_cast<const USERDATA*>(candidate.UserData);
        if (!data || !data->pKeyWordName) {
            result = E_FAIL;
        } else if (std::strncmp(data->pKeyWordName, keyword, std::strlen(keyword)) == 0) {
            *item = &candidate;
            return S_OK;
        } else {
            result = HRESULT_FROM_WIN32(ERROR_NOT_FOUND);
        }
    }
    return result;
}

POPTITEM FindFeature(const SheetState& sheet, PCSTR keyword) {
    POPTITEM item = nullptr;
    return SUCCEEDED(FindDriverOption(sheet.CurrentUIParam, keyword, &item)) ? item : nullptr;
}

POPTITEM DriverItemAt(const OEMCUIPPARAM* param, DWORD position) {
    return param && param->pDrvOptItems && position < param->cDrvOptItems ? &param->pDrvOptItems[position]
                                                                          : nullptr;
}

std::span<const OPTPARAM> OptionsOf(const OPTITEM* item) {
    if (!item || !item->pOptType || !item->pOptType->pOptParam)
        return {};
    return {item->pOptType->pOptParam, item->pOptType->Count};
}

PCWSTR OptionName(const OPTITEM* item, LONG position) {
    const auto options = OptionsOf(item);
    if (position < 0 || static_cast<size_t>(position) >= options.size())
        return nullptr;
    const PCWSTR name = options[static_cast<size_t>(position)].pData;
    return IS_INTRESOURCE(name) ? nullptr : name;
}

void AnnounceSelection(const SheetState& sheet, POPTITEM item) {
    IPrintOemDriverUI* const driverUI = sheet.DriverUI ? sheet.DriverUI : g_pOemDriverUI.load();
    if (item && sheet.CurrentUIParam && driverUI)
        (void)driverUI->DrvUpdateUISetting(sheet.CurrentUIParam->poemuiobj, item, 0, OEMCUIP_DOCPROP);
}

void SelectOption(const SheetState& sheet, POPTITEM item, LONG selection) {
    if (!item)
        return;
    item->Sel = selection;
    AnnounceSelection(sheet, item);
}

}  // namespace kzp

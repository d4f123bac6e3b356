#include "pages/ControlTexts.h"

#include <prsht.h>

#include "help/ResourceModule.h"

namespace kzp {

std::wstring LoadText(const SheetState& sheet, UINT id, HMODULE module) {
    const HANDLE heap = sheet.CurrentUIParam ? sheet.CurrentUIParam->hOEMHeap : GetProcessHeap();
    const PWSTR block = LoadResString(heap, module, id);
    if (!block)
        return {};
    std::wstring text = block;
    HeapFree(heap, 0, block);
    return text;
}

void LocaliseControls(const SheetState& sheet, HWND page, std::span<const ControlText> table) {
    for (const ControlText& entry : table) {
        if (const std::wstring text = LoadText(sheet, entry.text); !text.empty())
            SetDlgItemTextW(page, entry.control, text.c_str());
    }
}

void LocalisePageTitle(const SheetState& sheet, HWND page, UINT title) {
    if (const std::wstring text = LoadText(sheet, title); !text.empty())
        SendMessageW(page, PSM_SETTITLEW, 1, reinterpret_cast<LPARAM>(text.c_str()));
}

}  // namespace kzp

#include "pages/ControlTexts.h"

#include <prsht.h>

#include "core/Module.h"
#include "help/ResourceModule.h"
#include "settings/SheetState.h"

namespace kzp {

namespace {

// Runs `use` with the text, if there is one.
template <class Use>
void WithText(UINT id, Use&& use) {
    const HANDLE heap = g_sheet.CurrentUIParam ? g_sheet.CurrentUIParam->hOEMHeap : GetProcessHeap();
    const PWSTR text = LoadResString(heap, g_hInstance, id);
    if (!text)
        return;
    use(text);
    HeapFree(heap, 0, text);
}

}  // namespace

void LocaliseControls(HWND page, std::span<const ControlText> table) {
    for (const ControlText& entry : table)
        WithText(entry.text, [&](PCWSTR text) { SetDlgItemTextW(page, entry.control, text); });
}

void LocalisePageTitle(HWND page, UINT title) {
    WithText(title,
             [&](PCWSTR text) { SendMessageW(page, PSM_SETTITLEW, 1, reinterpret_cast<LPARAM>(text)); });
}

}  // namespace kzp

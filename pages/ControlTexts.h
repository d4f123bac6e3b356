// The texts of a page's controls, taken from the resource module over the English of its template.
#pragma once

#include <windows.h>

#include <span>
#include <string>

#include "core/Module.h"
#include "settings/SheetState.h"

namespace kzp {

struct ControlText {
    int control;
    UINT text;
};

// A text of the resource module beside `module`, at most 259 characters, empty when it cannot be loaded. It
// comes through the heap that the sheet's parameter block names and is given back to it.
std::wstring LoadText(const SheetState& sheet, UINT id, HMODULE module = g_hInstance);

// Sets each control's text; one that cannot be loaded leaves the template's.
void LocaliseControls(const SheetState& sheet, HWND page, std::span<const ControlText> table);

// Sends text `title` to the page as PSM_SETTITLEW with wParam 1. The page is meant, though it does nothing
// with a message for its frame; the tab gets its title through the fonts dialog.
void LocalisePageTitle(const SheetState& sheet, HWND page, UINT title);

}  // namespace kzp

// The texts of a page's controls, taken from the resource module over the English of its template.
#pragma once

#include <windows.h>

#include <span>

namespace kzp {

struct ControlText {
    int control;
    UINT text;
};

// Sets each control's text; one that cannot be loaded leaves the template's. Texts come through the heap that
// the driver's parameter block names and are given back to it.
void LocaliseControls(HWND page, std::span<const ControlText> table);

// Sends text `title` to the page as PSM_SETTITLEW with wParam 1.
void LocalisePageTitle(HWND page, UINT title);

}  // namespace kzp

#include "pages/settings/DocumentSettingsPage.h"

#include "core/DebugTrace.h"
#include "help/Help.h"
#include "pages/ControlTexts.h"
#include "resources/resource.h"

namespace kzp {

namespace {

constexpr ControlText kTexts[] = {
    {IDC_PAPER_LABEL, IDS_PAPER_LABEL},
    {IDC_WIDTH_LABEL, IDS_WIDTH_LABEL},
    {IDC_HEIGHT_LABEL, IDS_HEIGHT_LABEL},
    {IDC_MARGIN_LABEL, IDS_MARGIN_LABEL},
    {IDC_LEFT_LABEL, IDS_LEFT_LABEL},
    {IDC_RIGHT_LABEL, IDS_RIGHT_LABEL},
    {IDC_TOP_LABEL, IDS_TOP_LABEL},
    {IDC_BOTTOM_LABEL, IDS_BOTTOM_LABEL},
    {IDC_UNITS_LABEL, IDS_UNITS_LABEL},
    {IDC_INCHES, IDS_INCHES},
    {IDC_MILLIMETERS, IDS_MILLIMETERS},
    {IDC_ORIENTATION_LABEL, IDS_ORIENTATION_LABEL},
    {IDC_PORTRAIT, IDS_PORTRAIT},
    {IDC_LANDSCAPE, IDS_LANDSCAPE},
    {IDC_QUALITY_LABEL, IDS_QUALITY_LABEL},
    {IDC_COLOR_LABEL, IDS_COLOR_LABEL},
    {IDC_DISPLAY_IN_VIEWER, IDS_DISPLAY_IN_VIEWER},
    {IDC_OUTPUT_TYPE_LABEL, IDS_OUTPUT_TYPE_LABEL},
    {IDC_OUTPUT_KZPX, IDS_OUTPUT_KZPX},
    {IDC_OUTPUT_KZP, IDS_OUTPUT_KZP},
    {IDC_HELP_SETTINGS, IDS_HELP_SETTINGS},
    {IDC_PAPER_GROUP, IDS_PAPER_GROUP},
};

void LocaliseTexts(HWND page) {
    LocaliseControls(page, kTexts);
    LocalisePageTitle(page, IDS_SETTINGS_PAGE_TITLE);
}

}  // namespace

INT_PTR CALLBACK DocumentSettingsPageProc(HWND page, UINT message, WPARAM wParam, LPARAM) {
    return GuardCallback<INT_PTR>(L"DocumentSettingsPageProc", L"pages/settings/DocumentSettingsPage",
                                  __LINE__, 0, [&]() -> INT_PTR {
                                      switch (message) {
                                          case WM_INITDIALOG:
                                              LocaliseTexts(page);
                                              return 1;
                                          case WM_COMMAND:
                                              if (wParam != MAKEWPARAM(IDC_HELP_SETTINGS, BN_CLICKED))
                                                  return 0;
                                              ShowHelp();
                                              return 1;
                                          default:
                                              return 0;
                                      }
                                  });
}

}  // namespace kzp

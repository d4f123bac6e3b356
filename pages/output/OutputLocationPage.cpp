#include "pages/output/OutputLocationPage.h"

#include "core/DebugTrace.h"
#include "help/Help.h"
#include "pages/ControlTexts.h"
#include "resources/resource.h"

namespace kzp {

namespace {

constexpr ControlText kTexts[] = {
    {IDC_BROWSE, IDS_BROWSE},
    {IDC_SOURCE_LOCATION, IDS_SOURCE_LOCATION},
    {IDC_USER_LOCATION, IDS_USER_LOCATION},
    {IDC_DOCUMENTS_LOCATION, IDS_DOCUMENTS_LOCATION},
    {IDC_LOCATION_LABEL, IDS_LOCATION_LABEL},
    {IDC_SPECIFY_LABEL, IDS_SPECIFY_LABEL},
    {IDC_PROMPT_FILE_NAME, IDS_PROMPT_FILE_NAME},
    {IDC_OUTPUT_HEADING, IDS_OUTPUT_HEADING},
    {IDC_HELP_OUTPUT, IDS_HELP_OUTPUT},
};

}  // namespace

INT_PTR CALLBACK OutputLocationPageProc(HWND page, UINT message, WPARAM wParam, LPARAM) {
    return GuardCallback<INT_PTR>(L"OutputLocationPageProc", L"pages/output/OutputLocationPage", __LINE__, 0,
                                  [&]() -> INT_PTR {
                                      switch (message) {
                                          case WM_INITDIALOG:
                                              LocalisePageTitle(page, IDS_OUTPUT_PAGE_TITLE);
                                              LocaliseControls(page, kTexts);
                                              return 0;
                                          case WM_COMMAND:
                                              if (wParam != MAKEWPARAM(IDC_HELP_OUTPUT, BN_CLICKED))
                                                  return 0;
                                              ShowHelp();
                                              return 1;
                                          default:
                                              return 0;
                                      }
                                  });
}

}  // namespace kzp

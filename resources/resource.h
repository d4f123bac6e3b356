// Ids of the dialogs, their controls and the texts. The numbers are part of the design and stand nowhere
// else. Shared by the C++ sources and by the resource scripts, so it holds preprocessor definitions alone.
#pragma once

// ---- Dialogs (plug-in) ----
#define IDD_OUTPUT_LOCATION 111
#define IDD_DOCUMENT_SETTINGS 113
#define IDD_ADVANCED 114

// ---- Document settings page ----
#define IDC_HELP_SETTINGS 3003
#define IDC_PAPER_LABEL 1223
#define IDC_PAPER 1243
#define IDC_WIDTH_LABEL 1231
#define IDC_HEIGHT_LABEL 1232
#define IDC_WIDTH 1221
#define IDC_HEIGHT 1224
#define IDC_WIDTH_SPIN 1248
#define IDC_HEIGHT_SPIN 1249
#define IDC_PAPER_GROUP 1305
// 3020 to 3049 move together when the size row hides.
#define IDC_MOVING_FIRST 3020
#define IDC_MARGIN_LABEL 3020
#define IDC_LEFT_LABEL 3021
#define IDC_LEFT 3022
#define IDC_LEFT_SPIN 3023
#define IDC_RIGHT_LABEL 3024
#define IDC_RIGHT 3025
#define IDC_RIGHT_SPIN 3026
#define IDC_TOP_LABEL 3027
#define IDC_TOP 3028
#define IDC_TOP_SPIN 3029
#define IDC_BOTTOM_LABEL 3030
#define IDC_BOTTOM 3031
#define IDC_BOTTOM_SPIN 3032
#define IDC_UNITS_LABEL 3033
#define IDC_INCHES 3034
#define IDC_MILLIMETERS 3035
#define IDC_ORIENTATION_LABEL 3037
#define IDC_PORTRAIT 3038
#define IDC_LANDSCAPE 3039
#define IDC_QUALITY_LABEL 3041
#define IDC_QUALITY 3042
#define IDC_COLOR_LABEL 3043
#define IDC_COLOR 3044
#define IDC_DISPLAY_IN_VIEWER 3046
#define IDC_OUTPUT_TYPE_LABEL 3047
#define IDC_OUTPUT_KZPX 3048
#define IDC_OUTPUT_KZP 3049
#define IDC_MOVING_LAST 3049

// ---- Output location page ----
#define IDC_LOCATION_LABEL 206
#define IDC_SPECIFY_LABEL 207
#define IDC_OUTPUT_GROUP 208
#define IDC_FOLDER 1016
#define IDC_BROWSE 1017
#define IDC_SOURCE_LOCATION 1027
#define IDC_USER_LOCATION 1028
#define IDC_DOCUMENTS_LOCATION 1034
#define IDC_PROMPT_FILE_NAME 1238
#define IDC_HELP_OUTPUT 3004
#define IDC_OUTPUT_SEPARATOR 3009
#define IDC_OUTPUT_HEADING 3010

// ---- Font and colour dialog ----
#define IDC_FONTS_GROUP 1260
#define IDC_FONTS_ALL 1262
#define IDC_FONTS_NONE 1263
#define IDC_FONTS_SELECT 1264
#define IDC_FONT_LIST 1266
#define IDC_ICM_GROUP 1275
#define IDC_ICM_METHOD_LABEL 1276
#define IDC_ICM_INTENT_LABEL 1277
#define IDC_ICM_INTENT 1278
#define IDC_ICM_METHOD 1279
#define IDC_HELP_ADVANCED 3002
#define IDC_EMBED_FONTS_LABEL 3013
#define IDC_FONT_LIST_LABEL 3014

// ---- The property sheet's own frame (platform) ----
#define IDC_SHEET_APPLY 12321

// ---- Texts of the resource module ----
#define IDS_HELP_ITEM_NAME 101    // name of the driver item that receives help
#define IDS_ITEM_HELP_FILE 110    // its help file, in the driver's directory
#define IDS_ICM_INTENT_FIRST 452  // three entries of the intent list
#define IDS_ICM_METHOD_FIRST 456  // four entries of the method list
#define IDS_OUTPUT_HEADING 500
#define IDS_DOCUMENTS_LOCATION 501
#define IDS_SOURCE_LOCATION 502
#define IDS_USER_LOCATION 503
#define IDS_LOCATION_LABEL 504
#define IDS_BROWSE 506
#define IDS_PROMPT_FILE_NAME 507
#define IDS_SPECIFY_LABEL 508
#define IDS_OUTPUT_PAGE_TITLE 509
#define IDS_CUSTOM_PAPER 552  // shown for the paper option "User Defined"
#define IDS_PAPER_LABEL 600
#define IDS_ORIENTATION_LABEL 601
#define IDS_PORTRAIT 602
#define IDS_LANDSCAPE 603
#define IDS_WIDTH_LABEL 604
#define IDS_HEIGHT_LABEL 605
#define IDS_MARGIN_LABEL 606
#define IDS_LEFT_LABEL 607
#define IDS_TOP_LABEL 608
#define IDS_RIGHT_LABEL 609
#define IDS_BOTTOM_LABEL 610
#define IDS_UNITS_LABEL 611
#define IDS_INCHES 612
#define IDS_MILLIMETERS 613
#define IDS_QUALITY_LABEL 614
#define IDS_COLOR_LABEL 615
#define IDS_DISPLAY_IN_VIEWER 616
#define IDS_PAPER_GROUP 617
#define IDS_SETTINGS_PAGE_TITLE 618
#define IDS_FOLDER_ERROR_CAPTION 656
#define IDS_INSTALL_ERROR_CAPTION 659
#define IDS_FONTS_UNAVAILABLE 700  // in place of the fonts dialog in a restricted process
#define IDS_FOLDER_ERROR_TEXT 701
#define IDS_OUTPUT_TYPE_LABEL 702
#define IDS_OUTPUT_KZPX 703
#define IDS_OUTPUT_KZP 704
#define IDS_BROWSE_TITLE 800
#define IDS_HELP_SETTINGS 3051
#define IDS_HELP_OUTPUT 3052
#define IDS_INVALID_SIZE_CAPTION 3053
#define IDS_INVALID_SIZE_TEXT 3054
#define IDS_MONITOR_FAILED 3056
#define IDS_OPEN_PRINTER_FAILED 3057
#define IDS_SET_PORT_FAILED 3058
#define IDS_GET_PRINTER_FAILED 3059

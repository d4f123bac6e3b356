// What the printer's driver offers. The plug-in finds a document's features by keyword, a few by position:
// paper first, the true-colour switch fifth, the colour-management items sixth and seventh, fonts tenth.
#include <span>
#include <sstream>

#include "tools/driverhost/DriverTree.h"

namespace driverhost {

namespace {

struct Row {
    PCSTR keyword;
    PCWSTR name;
    BYTE dmPub;
    BYTE type;
    LONG selection;
    PCWSTR options;  // with bars in between
};
constexpr Row kDocument[] = {
    {"PaperSize", L"Paper Size", DMPUB_FORMNAME, TVOT_LISTBOX, 0,
     L"Letter|Tabloid|Legal|Executive|A3|A4|A5|User Defined"},
    {"Orientation", L"Orientation", DMPUB_ORIENTATION, TVOT_2STATES, 0, L"Portrait|Landscape"},
    {"Resolution", L"Print Quality", DMPUB_PRINTQUALITY, TVOT_LISTBOX, 2,
     L"200 x 200 dpi|300 x 300 dpi|400 x 400 dpi|600 x 600 dpi|1200 x 1200 dpi"},
    {"ColorMode", L"Color Mode", DMPUB_COLOR, TVOT_LISTBOX, 2, L"Monochrome|256 colors|True color"},
    {"TrueColor", L"True Color", DMPUB_NONE, TVOT_2STATES, 1, L"Off|On"},
    {"ICMIntent", L"ICM Intent", DMPUB_ICMINTENT, TVOT_LISTBOX, 0, L"Graphics|Pictures|Proof"},
    {"ICMMethod", L"ICM Method", DMPUB_ICMMETHOD, TVOT_LISTBOX, 0,
     L"ICM disabled|ICM handled by host system|ICM handled by printer|ICM handled by printer using printer "
     L"calibration"},
    {"Copies", L"Copy Count", DMPUB_COPIES_COLLATE, TVOT_UDARROW, 1, L"copies"},
    {"NUp", L"Pages per Sheet", DMPUB_NUP, TVOT_LISTBOX, 0, L"1|2|4|6|9|16"},
    {"FontEmbedding", L"Embed Fonts", DMPUB_NONE, TVOT_LISTBOX, 1, L"All|None|Select fonts"},
    {"PageOrder", L"Page Order", DMPUB_PAGEORDER, TVOT_2STATES, 0, L"Front to back|Back to front"},
    {"CustomUnit", L"Custom Size Unit", DMPUB_NONE, TVOT_2STATES, 0, L"Inches|Millimeters"},
    {"SaveAsDialogPreference", L"Save As Dialog", DMPUB_NONE, TVOT_2STATES, 0, L"Show|Do not show"},
    {"OutputFile", L"Output File", DMPUB_NONE, TVOT_LISTBOX, 0, L""},
};
constexpr Row kPrinter[] = {
    {"PageProtection", L"Page Protection", DMPUB_NONE, TVOT_2STATES, 0, L"Off|On"},
    {"Memory", L"Printer Memory", DMPUB_NONE, TVOT_LISTBOX, 1, L"64 MB|256 MB"},
};
constexpr Row kPlugIn[] = {
    {"OutputLocation", L"Output Location", DMPUB_NONE, TVOT_2STATES, 0,
     L"My Documents location|User document location"},
};

DriverTree Build(std::span<const Row> rows) {
    DriverTree tree;
    for (const Row& row : rows) {
        Feature feature = {row.keyword, row.name, row.dmPub, row.type, {}, row.selection};
        std::wistringstream options(row.options);
        for (std::wstring option; std::getline(options, option, L'|');)
            feature.options.push_back(option);
        tree.Add(std::move(feature));
    }
    return tree;
}

}  // namespace

DriverTree DriverTree::Standard(const std::wstring& helpItemName) {
    DriverTree tree = Build(kDocument);
    tree.Add(
        {"KZPOutput", helpItemName, DMPUB_NONE, TVOT_LISTBOX, {L"Drawing", L"Drawing with preview"}, 0, 2});
    return tree;
}

DriverTree DriverTree::OfPrinter() {
    return Build(kPrinter);
}

DriverTree DriverTree::PlugInItems() {
    return Build(kPlugIn);
}

}  // namespace driverhost

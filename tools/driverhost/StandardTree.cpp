// What the printer's driver offers for a document. The plug-in finds its features by keyword, a few by
// position: paper first, the true-colour switch fifth, the colour-management items sixth and seventh, fonts
// tenth.
#include "tools/driverhost/DriverTree.h"

namespace driverhost {

DriverTree DriverTree::Standard(const std::wstring& helpItemName) {
    DriverTree tree;
    tree.Add({"PaperSize",
              L"Paper Size",
              DMPUB_FORMNAME,
              TVOT_LISTBOX,
              {L"Letter", L"Tabloid", L"Legal", L"Executive", L"A3", L"A4", L"A5", L"User Defined"},
              0});
    tree.Add(
        {"Orientation", L"Orientation", DMPUB_ORIENTATION, TVOT_2STATES, {L"Portrait", L"Landscape"}, 0});
    tree.Add({"Resolution",
              L"Print Quality",
              DMPUB_PRINTQUALITY,
              TVOT_LISTBOX,
              {L"200 x 200 dpi", L"300 x 300 dpi", L"400 x 400 dpi", L"600 x 600 dpi", L"1200 x 1200 dpi"},
              2});
    tree.Add({"ColorMode",
              L"Color Mode",
              DMPUB_COLOR,
              TVOT_LISTBOX,
              {L"Monochrome", L"256 colors", L"True color"},
              2});
    tree.Add({"TrueColor", L"True Color", DMPUB_NONE, TVOT_2STATES, {L"Off", L"On"}, 1});
    tree.Add(
        {"ICMIntent", L"ICM Intent", DMPUB_ICMINTENT, TVOT_LISTBOX, {L"Graphics", L"Pictures", L"Proof"}, 0});
    tree.Add({"ICMMethod",
              L"ICM Method",
              DMPUB_ICMMETHOD,
              TVOT_LISTBOX,
              {L"ICM disabled", L"ICM handled by host system", L"ICM handled by printer",
               L"ICM handled by printer using printer calibration"},
              0});
    tree.Add({"Copies", L"Copy Count", DMPUB_COPIES_COLLATE, TVOT_UDARROW, {L"copies", L""}, 1});
    tree.Add({"NUp", L"Pages per Sheet", DMPUB_NUP, TVOT_LISTBOX, {L"1", L"2", L"4", L"6", L"9", L"16"}, 0});
    tree.Add(
        {"FontEmbedding", L"Embed Fonts", DMPUB_NONE, TVOT_LISTBOX, {L"All", L"None", L"Select fonts"}, 1});
    tree.Add(
        {"PageOrder", L"Page Order", DMPUB_PAGEORDER, TVOT_2STATES, {L"Front to back", L"Back to front"}, 0});
    tree.Add({"CustomUnit", L"Custom Size Unit", DMPUB_NONE, TVOT_2STATES, {L"Inches", L"Millimeters"}, 0});
    tree.Add({"SaveAsDialogPreference",
              L"Save As Dialog",
              DMPUB_NONE,
              TVOT_2STATES,
              {L"Show", L"Do not show"},
              0});
    tree.Add({"OutputFile", L"Output File", DMPUB_NONE, TVOT_LISTBOX, {}, 0});
    tree.Add(
        {"KZPOutput", helpItemName, DMPUB_NONE, TVOT_LISTBOX, {L"Drawing", L"Drawing with preview"}, 0, 2});
    return tree;
}

DriverTree DriverTree::OfPrinter() {
    DriverTree tree;
    tree.Add({"PageProtection", L"Page Protection", DMPUB_NONE, TVOT_2STATES, {L"Off", L"On"}, 0});
    tree.Add({"Memory", L"Printer Memory", DMPUB_NONE, TVOT_LISTBOX, {L"64 MB", L"256 MB"}, 1});
    return tree;
}

DriverTree DriverTree::PlugInItems() {
    DriverTree tree;
    tree.Add({"OutputLocation",
              L"Output Location",
              DMPUB_NONE,
              TVOT_2STATES,
              {L"My Documents location", L"User document location"},
              0});
    return tree;
}

}  // namespace driverhost

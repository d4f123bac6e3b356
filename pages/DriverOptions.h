// The core driver's option items: finding a feature, reading its options, announcing a changed selection.
//
// A driver may offer fewer items, features or options than the pages know. Everything here stays inside the
// arrays and answers null or nothing for what is not there.
#pragma once

#include <span>

#include "settings/SheetState.h"

namespace kzp {

// Keywords of the features that the pages know.
inline constexpr char kPaperSize[] = "PaperSize";
inline constexpr char kResolution[] = "Resolution";
inline constexpr char kColorMode[] = "ColorMode";
inline constexpr char kOrientation[] = "Orientation";
inline constexpr char kCustomUnit[] = "CustomUnit";  // selection 0 inches, 1 millimetres
inline constexpr char kSaveAsPreference[] = "SaveAsDialogPreference";

// Finds the first driver item whose ANSI keyword begins with `keyword`, longer keywords included. S_OK and
// the item (null for an empty list); E_POINTER for a null argument; E_PENDING without an item array;
// otherwise what was wrong with the last item: E_FAIL without a keyword, HRESULT_FROM_WIN32(ERROR_NOT_FOUND)
// for another one. `*item` is null unless one was found; items are the driver's and are never freed here.
HRESULT FindDriverOption(POEMCUIPPARAM param, PCSTR keyword, POPTITEM* item);

// The feature's item in a sheet, or null.
POPTITEM FindFeature(const SheetState& sheet, PCSTR keyword);

// The driver item at a fixed position of a parameter block, or null without a block and when the array is
// shorter.
POPTITEM DriverItemAt(const OEMCUIPPARAM* param, DWORD position);

// The item's options in the driver's order; empty without a type or for a type without options.
std::span<const OPTPARAM> OptionsOf(const OPTITEM* item);

// Name of an option; null for a position outside the list and for a name that is a resource number.
PCWSTR OptionName(const OPTITEM* item, LONG position);

// Tells the core driver that the selection of the sheet's item changed, through the helper interface that
// came with the sheet, or the latest that any came with. Nothing happens without an item, a block or an
// interface.
void AnnounceSelection(const SheetState& sheet, POPTITEM item);

// Sets and announces; nothing happens without an item.
void SelectOption(const SheetState& sheet, POPTITEM item, LONG selection);

}  // namespace kzp

// The chosen fonts as they are stored, the installed font families, and finding the ones among the others.
#pragma once

#include <windows.h>

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kzp {

// A stored font: its family's face name, cut to 31 characters and padded with zeros to 32. The stored value
// is a plain sequence of these, without a header or a count.
struct FontRecord {
    wchar_t faceName[LF_FACESIZE];
};
static_assert(sizeof(FontRecord) == 64);

FontRecord MakeFontRecord(std::wstring_view faceName);

// The name in a record; at most 31 characters of one that lacks its terminator.
std::wstring_view FaceNameOf(const FontRecord& record);

// Which fonts travel with a document: the selections of the driver's item.
enum FontChoice : LONG { kAllFonts = 0, kNoFonts = 1, kSelectedFonts = 2 };

// The choice that a fresh dialog shows, from the item's selection and the numbers of stored and of listed
// fonts. The stored fonts deliberately override an item that says all or none.
FontChoice ChooseFonts(LONG itemSelection, size_t stored, size_t listed);

// Finds names in a list the way a list view finds a whole text (LVFI_STRING): without regard to case, the
// first of several equals; but in logarithmic time.
class NameIndex {
  public:
    // `names` in list order; they must outlive the index.
    explicit NameIndex(std::span<const std::wstring> names);

    // Position in the list, or -1.
    int Find(std::wstring_view name) const;

  private:
    std::span<const std::wstring> m_names;
    std::vector<int> m_order;
};

// The installed font families of a device, each once, in ascending order without regard to case.
std::vector<std::wstring> InstalledFontFamilies(HDC device);

}  // namespace kzp

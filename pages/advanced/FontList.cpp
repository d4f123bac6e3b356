#include "pages/advanced/FontList.h"

#include <algorithm>
#include <cwchar>

#include "core/DebugTrace.h"
#include "support/Names.h"

namespace kzp {

namespace {

constexpr size_t kFaceNameCharacters = LF_FACESIZE - 1;

int CALLBACK CollectFamily(const LOGFONTW* font, const TEXTMETRICW*, DWORD, LPARAM param) {
    return GuardCallback<int>(L"CollectFamily", L"pages/advanced/FontList", __LINE__, 0, [&] {
        reinterpret_cast<std::vector<std::wstring>*>(param)->emplace_back(
            font->lfFaceName, wcsnlen(font->lfFaceName, kFaceNameCharacters));
        return 1;
    });
}

}  // namespace

FontRecord MakeFontRecord(std::wstring_view faceName) {
    FontRecord record = {};
    faceName.substr(0, kFaceNameCharacters).copy(record.faceName, kFaceNameCharacters);
    return record;
}

std::wstring_view FaceNameOf(const FontRecord& record) {
    return {record.faceName, wcsnlen(record.faceName, kFaceNameCharacters)};
}

FontChoice ChooseFonts(LONG itemSelection, size_t stored, size_t listed) {
    if (itemSelection == kSelectedFonts)
        return kSelectedFonts;
    if (stored == 0)
        return kNoFonts;
    return stored >= listed ? kAllFonts : kSelectedFonts;
}

NameIndex::NameIndex(std::span<const std::wstring> names) : m_names(names), m_order(names.size()) {
    for (size_t position = 0; position < names.size(); ++position)
        m_order[position] = static_cast<int>(position);
    std::sort(m_order.begin(), m_order.end(), [&](int left, int right) {
        const int order = CompareNames(names[static_cast<size_t>(left)], names[static_cast<size_t>(right)]);
        return order != 0 ? order < 0 : left < right;
    });
}

int NameIndex::Find(std::wstring_view name) const {
    const auto NameAt = [&](int position) -> const std::wstring& {
        return m_names[static_cast<size_t>(position)];
    };
    const auto found = std::lower_bound(
        m_order.begin(), m_order.end(), name,
        [&](int position, std::wstring_view text) { return CompareNames(NameAt(position), text) < 0; });
    return found != m_order.end() && CompareNames(NameAt(*found), name) == 0 ? *found : -1;
}

std::vector<std::wstring> InstalledFontFamilies(HDC device) {
    std::vector<std::wstring> families;
    EnumFontFamiliesW(device, nullptr, CollectFamily, reinterpret_cast<LPARAM>(&families));
    // Windows calls back once per family, other platforms once per family and character set.
    std::sort(families.begin(), families.end(), [](const std::wstring& left, const std::wstring& right) {
        const int order = lstrcmpiW(left.c_str(), right.c_str());
        return order != 0 ? order < 0 : left < right;
    });
    families.erase(std::unique(families.begin(), families.end()), families.end());
    return families;
}

}  // namespace kzp

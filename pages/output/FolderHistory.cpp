#include "pages/output/FolderHistory.h"

#include <algorithm>

namespace kzp {

namespace {

constexpr wchar_t kSeparator = L';';

}  // namespace

bool IsHistoryFull(std::wstring_view history) {
    const auto separators = std::count(history.begin(), history.end(), kSeparator);
    return static_cast<size_t>(separators) >= kFolderHistoryLimit;
}

std::wstring DropOldest(std::wstring& history) {
    const size_t end = history.find(kSeparator);
    if (end == std::wstring::npos)
        return {};
    std::wstring oldest = history.substr(0, end);
    history.erase(0, end + 1);
    return oldest;
}

void AppendFolder(std::wstring& history, std::wstring_view folder) {
    history += folder;
    history += kSeparator;
}

std::vector<std::wstring> HistoryEntries(std::wstring_view history) {
    std::vector<std::wstring> entries;
    size_t begin = 0;
    for (size_t end; (end = history.find(kSeparator, begin)) != std::wstring_view::npos; begin = end + 1)
        entries.emplace_back(history.substr(begin, end - begin));
    return entries;
}

}  // namespace kzp

// The history of output folders as it is stored: paths, oldest first, each followed by ";", the last one too.
//
// Nothing is escaped; a path that holds ";" is not supported. Texts that were stored by others (no closing
// separator, empty entries, too many entries) are taken as they are.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kzp {

// A history with this many separators drops its oldest entry before another folder is added. It drops no more
// than the one, however many there are.
inline constexpr size_t kFolderHistoryLimit = 5;

// True when the oldest entry has to go before one is added. Separators are counted, not entries.
bool IsHistoryFull(std::wstring_view history);

// Takes the first entry and its separator off the front and answers the entry; empty, with the history
// untouched, when there is no separator.
std::wstring DropOldest(std::wstring& history);

void AppendFolder(std::wstring& history, std::wstring_view folder);

// The entries in stored order; a last piece without a separator is none.
std::vector<std::wstring> HistoryEntries(std::wstring_view history);

}  // namespace kzp

// Folder histories that others stored, and paths in bounded buffers.
#include <memory>

#include "pages/output/FolderHistory.h"
#include "support/Bounded.h"
#include "tools/fuzz/Input.h"

using namespace kzp;
using kzp::fuzz::Expect;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    const size_t capacity = 1 + input.Take<std::uint8_t>();
    std::wstring history = input.TakeText(1023);
    const std::wstring before = history;

    const size_t entries = HistoryEntries(history).size();
    Expect(IsHistoryFull(history) == (entries >= kFolderHistoryLimit), "full by its entries");
    const std::wstring oldest = DropOldest(history);
    Expect(entries == 0 ? history == before : oldest + L";" + history == before,
           "the oldest goes off the front");
    AppendFolder(history, L"C:\\new");
    const auto after = HistoryEntries(history);
    Expect(!after.empty() && after.back().ends_with(L"C:\\new"), "the newest stands last");

    // An unterminated buffer of exactly its capacity.
    const std::unique_ptr<wchar_t[]> buffer(new wchar_t[capacity]);
    for (size_t at = 0; at < capacity; ++at)
        buffer[at] = at < before.size() ? before[at] : L'x';
    AppendBounded(buffer.get(), capacity, before, input.Take<std::uint8_t>());
    Expect(wcsnlen(buffer.get(), capacity) < capacity, "terminated");
    const bool cut = CutAfterLastBackslash(buffer.get());
    const std::wstring path = buffer.get();
    Expect(cut ? path.ends_with(L'\\') : path.find(L'\\') == std::wstring::npos, "cut behind a backslash");
    return 0;
}

#include "help/ItemHelp.h"

#include <winspool.h>

#include "help/ResourceModule.h"
#include "support/Bounded.h"

namespace kzp {

namespace {

// The driver's directory (260 characters at most) and the file's name share this room, terminator included.
constexpr size_t kHelpPathCharacters = 261;
constexpr int kDriverInfoCalls = 5;

POIEXT EnsureExtension(HANDLE heap, POPTITEM item) {
    if (!item->pOIExt) {
        auto* const extension = static_cast<POIEXT>(HeapAlloc(heap, HEAP_ZERO_MEMORY, sizeof(OIEXT)));
        if (extension)
            extension->cbSize = sizeof(OIEXT);
        item->pOIExt = extension;
    }
    return item->pOIExt;
}

// The printer's DRIVER_INFO_2 in a block of `heap`, which the caller frees; null when the spooler does not
// tell.
DRIVER_INFO_2W* FetchDriverInfo(HANDLE printer, HANDLE heap) {
    void* block = nullptr;
    DWORD size = 0;
    for (int call = 0; call < kDriverInfoCalls; ++call) {
        DWORD needed = 0;
        if (GetPrinterDriverW(printer, nullptr, 2, static_cast<BYTE*>(block), size, &needed))
            return static_cast<DRIVER_INFO_2W*>(block);
        if (GetLastError() != ERROR_INSUFFICIENT_BUFFER)
            break;
        void* const grown = block ? HeapReAlloc(heap, 0, block, needed) : HeapAlloc(heap, 0, needed);
        if (!grown)
            break;
        block = grown;
        size = needed;
    }
    if (block)
        HeapFree(heap, 0, block);
    return nullptr;
}

// The driver's directory with its closing backslash into `path`; false when it is not known.
bool DriverDirectory(HANDLE printer, HANDLE heap, wchar_t (&path)[kHelpPathCharacters]) {
    DRIVER_INFO_2W* const info = FetchDriverInfo(printer, heap);
    if (!info)
        return false;
    bool found = false;
    if (info->pDriverPath) {
        AppendBounded(path, kHelpPathCharacters, info->pDriverPath);
        found = CutAfterLastBackslash(path);
    }
    HeapFree(heap, 0, info);
    return found;
}

PWSTR BuildHelpFilePath(HANDLE printer, HANDLE heap, HMODULE texts, UINT stringId) {
    wchar_t path[kHelpPathCharacters] = {};
    if (!DriverDirectory(printer, heap, path))
        return nullptr;
    const size_t directory = wcslen(path);
    const auto room = static_cast<int>(kHelpPathCharacters - directory);
    const int name = LoadStringW(texts, stringId, path + directory, room);
    if (name <= 0)
        return nullptr;
    const size_t bytes = (directory + static_cast<size_t>(name) + 1) * sizeof(wchar_t);
    auto* const result = static_cast<PWSTR>(HeapAlloc(heap, 0, bytes));
    if (result)
        CopyMemory(result, path, bytes);
    return result;
}

}  // namespace

BOOL SetItemHelp(HANDLE hPrinter, HANDLE hHeap, HMODULE hModule, POPTITEM pOptItem, DWORD helpIndex,
                 UINT stringId) {
    if (!hHeap)
        return FALSE;
    const POIEXT extension = EnsureExtension(hHeap, pOptItem);
    if (!extension)
        return FALSE;
    const ResModuleUse texts(hModule);
    if (!texts.Get())
        return FALSE;
    extension->pHelpFile = BuildHelpFilePath(hPrinter, hHeap, texts.Get(), stringId);
    pOptItem->Flags |= OPTIF_HAS_POIEXT;
    pOptItem->HelpIndex = helpIndex;
    return TRUE;
}

}  // namespace kzp

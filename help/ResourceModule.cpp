#include "help/ResourceModule.h"

#include <algorithm>

#include "support/Bounded.h"
#include "support/Lock.h"
#include "support/UniqueHandle.h"

namespace kzp {

HMODULE g_hResModule = nullptr;
DWORD g_cResModuleUses = 0;

namespace {

constinit SRWLOCK g_lock = SRWLOCK_INIT;

constexpr wchar_t kResModuleName[] = L"KZPWriterRes.dll";
constexpr int kTextCharacters = 260;

// A data file is mapped as far as it goes, and what its headers promise behind that would be read all the
// same: a file that was cut short would end the printing program.
bool IsWhole(HMODULE dataFile) {
    // The lowest bits of its handle only tell how it was loaded.
    const auto* const file =
        reinterpret_cast<const BYTE*>(reinterpret_cast<ULONG_PTR>(dataFile) & ~ULONG_PTR{3});
    MEMORY_BASIC_INFORMATION view = {};
    if (VirtualQuery(file, &view, sizeof view) == 0)
        return false;
    // Somebody has it loaded as a program's module, and that one is handed out.
    if (view.Type == MEM_IMAGE)
        return true;
    const auto reaches = [&](size_t end) { return end <= view.RegionSize; };
    const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(file);
    const size_t headers = static_cast<DWORD>(dos->e_lfanew);
    if (!reaches(headers + sizeof(IMAGE_NT_HEADERS)))
        return false;
    const auto* const nt = reinterpret_cast<const IMAGE_NT_HEADERS*>(file + headers);
    const IMAGE_SECTION_HEADER* const first = IMAGE_FIRST_SECTION(nt);
    const IMAGE_SECTION_HEADER* const end = first + nt->FileHeader.NumberOfSections;
    return reaches(static_cast<size_t>(reinterpret_cast<const BYTE*>(end) - file)) &&
           std::all_of(first, end, [&](const IMAGE_SECTION_HEADER& section) {
               return reaches(size_t{section.PointerToRawData} + section.SizeOfRawData);
           });
}

HMODULE LoadResModuleBeside(HMODULE module) {
    wchar_t path[MAX_PATH] = {};
    if (GetModuleFileNameW(module, path, MAX_PATH) == 0 || !CutAfterLastBackslash(path))
        return nullptr;
    AppendBounded(path, MAX_PATH, kResModuleName);
    UniqueModule texts(LoadLibraryExW(path, nullptr, LOAD_LIBRARY_AS_DATAFILE));
    return texts && IsWhole(texts.Get()) ? texts.Release() : nullptr;
}

}  // namespace

HMODULE AcquireResModule(HMODULE hModuleBeside) {
    const Lock lock(g_lock);
    if (!g_hResModule)
        g_hResModule = LoadResModuleBeside(hModuleBeside);
    ++g_cResModuleUses;
    return g_hResModule;
}

void ReleaseResModule(HMODULE hModule) {
    const Lock lock(g_lock);
    if (g_cResModuleUses == 0 || hModule != g_hResModule)
        return;
    if (--g_cResModuleUses != 0)
        return;
    FreeLibrary(g_hResModule);
    g_hResModule = nullptr;
}

PWSTR LoadResString(HANDLE hHeap, HMODULE hModuleFallback, UINT id) {
    if (!hHeap)
        return nullptr;
    auto* const text =
        static_cast<PWSTR>(HeapAlloc(hHeap, HEAP_ZERO_MEMORY, kTextCharacters * sizeof(wchar_t)));
    if (!text)
        return nullptr;
    const ResModuleUse shared(hModuleFallback);
    const int length = LoadStringW(shared.Get() ? shared.Get() : hModuleFallback, id, text, kTextCharacters);
    if (length <= 0) {
        HeapFree(hHeap, 0, text);
        return nullptr;
    }
    void* const trimmed = HeapReAlloc(hHeap, 0, text, (static_cast<size_t>(length) + 1) * sizeof(wchar_t));
    return trimmed ? static_cast<PWSTR>(trimmed) : text;
}

}  // namespace kzp

#include "help/ResourceModule.h"

#include "support/Bounded.h"

namespace kzp {

HMODULE g_hResModule = nullptr;
DWORD g_cResModuleUses = 0;

namespace {

constexpr wchar_t kResModuleName[] = L"KZPWriterRes.dll";
constexpr int kTextCharacters = 260;

HMODULE LoadResModuleBeside(HMODULE module) {
    wchar_t path[MAX_PATH] = {};
    if (GetModuleFileNameW(module, path, MAX_PATH) == 0 || !CutAfterLastBackslash(path))
        return nullptr;
    AppendBounded(path, MAX_PATH, kResModuleName);
    return LoadLibraryExW(path, nullptr, LOAD_LIBRARY_AS_DATAFILE);
}

}  // namespace

HMODULE AcquireResModule(HMODULE hModuleBeside) {
    if (!g_hResModule)
        g_hResModule = LoadResModuleBeside(hModuleBeside);
    ++g_cResModuleUses;
    return g_hResModule;
}

void ReleaseResModule(HMODULE hModule) {
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

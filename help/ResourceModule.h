// The resource-only DLL that holds the user's texts, found beside the plug-in and shared by all users in the
// process.
#pragma once

#include <windows.h>

namespace kzp {

// The shared module while somebody uses it, and the number of acquisitions not given back. Sheets on several
// threads share them, behind a lock.
extern HMODULE g_hResModule;
extern DWORD g_cResModuleUses;

// Loads "KZPWriterRes.dll" from the folder of `hModuleBeside` on first use. Answers null when it is not
// there or was cut short; the failed acquisition counts all the same and is never given back, and the next
// one tries again.
HMODULE AcquireResModule(HMODULE hModuleBeside);

// Gives one acquisition back; the last one frees the module. Any handle but the shared one is ignored.
void ReleaseResModule(HMODULE hModule);

// One acquisition; it also keeps the module in memory while many texts are loaded, each of which would load
// and free it again.
class ResModuleUse {
  public:
    explicit ResModuleUse(HMODULE hModuleBeside) : m_module(AcquireResModule(hModuleBeside)) {}
    ~ResModuleUse() {
        if (m_module)
            ReleaseResModule(m_module);
    }
    ResModuleUse(const ResModuleUse&) = delete;
    ResModuleUse& operator=(const ResModuleUse&) = delete;

    HMODULE Get() const { return m_module; }  // null when it is not there

  private:
    HMODULE m_module;
};

// A text of the resource module, at most 259 characters, in a block of `hHeap` that the caller (or the heap's
// owner) frees; null when there is no heap, no memory or no such text. Without a resource module the text is
// looked for in `hModuleFallback`, whose own table is small.
PWSTR LoadResString(HANDLE hHeap, HMODULE hModuleFallback, UINT id);

}  // namespace kzp

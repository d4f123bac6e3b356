// Replaces one function that a loaded module imports, for as long as the object lives.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace kzp::test {

// Only load-time imports are patched; for functions that the module asks for by name, its GetProcAddress is
// one. `Original` is what the module called before.
class ImportPatch {
  public:
    ImportPatch(HMODULE module, const char* function, void* replacement);
    ~ImportPatch();
    ImportPatch(const ImportPatch&) = delete;
    ImportPatch& operator=(const ImportPatch&) = delete;

    template <class Function>
    Function Original() const {
        return reinterpret_cast<Function>(m_original);
    }

  private:
    void** m_slot = nullptr;
    void* m_original = nullptr;
};

struct Import {
    std::string dll;
    std::string function;
    void** slot;
};

// The load-time imports of a loaded module that have names.
std::vector<Import> ImportsOf(HMODULE module);

// For passing a function where a patch wants its address.
template <class Function>
void* AddressOf(Function* function) {
    return reinterpret_cast<void*>(function);
}

}  // namespace kzp::test

// One call of one imported function refused, as when a resource has run out for a moment.
#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/support/ImportPatch.h"

namespace kzp::stress {

// The imported functions that can fail.
std::vector<std::string> FallibleImports(HMODULE module);

// While it lives, the given call (counted from 1; 0: none) does not reach the function and answers what it
// answers when it fails; the last error is then ERROR_NOT_ENOUGH_MEMORY.
class FailOnce {
  public:
    FailOnce(HMODULE module, const std::string& function, int call);

    int Calls() const;

  private:
    struct Thunk;
    struct FreePages {
        void operator()(Thunk* thunk) const { VirtualFree(thunk, 0, MEM_RELEASE); }
    };
    static ULONG_PTR Refuse(Thunk* thunk);

    std::unique_ptr<Thunk, FreePages> m_thunk;
    test::ImportPatch m_patch;  // gone before the code that it leads to
};

}  // namespace kzp::stress

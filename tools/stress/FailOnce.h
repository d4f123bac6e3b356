// One call of one imported function refused, as when a resource has run out for a moment.
#pragma once

#include <windows.h>

#include <memory>
#include <string>

#include "tests/support/ImportPatch.h"

namespace stress {

using kzp::test::Import;

// Why a function is not refused; null for one that is.
const char* WhySpared(const Import& import);

// While it lives, the given call (counted from 1; 0: none) does not reach the function and answers what it
// answers when it fails; the last error is then ERROR_NOT_ENOUGH_MEMORY.
class FailOnce {
  public:
    FailOnce(HMODULE module, const std::string& function, LONG64 call);

    LONG64 Calls() const;

  private:
    struct Thunk;
    struct FreePages {
        void operator()(Thunk* thunk) const { VirtualFree(thunk, 0, MEM_RELEASE); }
    };
    static ULONG_PTR Refuse(Thunk* thunk);

    std::unique_ptr<Thunk, FreePages> m_thunk;
    kzp::test::ImportPatch m_patch;  // gone before the code that it leads to
};

}  // namespace stress

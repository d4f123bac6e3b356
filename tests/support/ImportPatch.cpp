#include "tests/support/ImportPatch.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace kzp::test {

namespace {

void* Exchange(void** slot, void* value) {
    DWORD protection = 0;
    VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &protection);
    void* const old = *slot;
    *slot = value;
    VirtualProtect(slot, sizeof *slot, protection, &protection);
    return old;
}

}  // namespace

std::vector<Import> ImportsOf(HMODULE module) {
    std::vector<Import> imports;
    auto* const base = reinterpret_cast<BYTE*>(module);
    const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto* const headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
    const DWORD table = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    for (auto* dll = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + table); dll->Name; ++dll) {
        auto* name = reinterpret_cast<const IMAGE_THUNK_DATA*>(base + dll->OriginalFirstThunk);
        auto* slot = reinterpret_cast<void**>(base + dll->FirstThunk);
        for (; name->u1.AddressOfData; ++name, ++slot) {
            if (IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal))
                continue;
            const auto* const byName =
                reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + name->u1.AddressOfData);
            imports.push_back({reinterpret_cast<const char*>(base + dll->Name),
                               reinterpret_cast<const char*>(byName->Name), slot});
        }
    }
    return imports;
}

ImportPatch::ImportPatch(HMODULE module, const char* function, void* replacement) {
    const std::vector<Import> imports = ImportsOf(module);
    const auto found = std::ranges::find(imports, function, &Import::function);
    if (found == imports.end()) {
        ADD_FAILURE() << "the module does not import " << function;
        return;
    }
    m_slot = found->slot;
    m_original = Exchange(m_slot, replacement);
}

ImportPatch::~ImportPatch() {
    if (m_slot)
        Exchange(m_slot, m_original);
}

}  // namespace kzp::test

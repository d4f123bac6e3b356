#include "tests/support/ImportPatch.h"

#include <gtest/gtest.h>

namespace kzp::test {

namespace {

// Calls `visit` with every function imported by name and its slot; ends when it answers true.
template <class Visit>
void VisitImports(HMODULE module, Visit&& visit) {
    auto* const base = reinterpret_cast<BYTE*>(module);
    const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto* const headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
    const DWORD imports = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    for (auto* dll = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + imports); dll->Name; ++dll) {
        auto* name = reinterpret_cast<const IMAGE_THUNK_DATA*>(base + dll->OriginalFirstThunk);
        auto* slot = reinterpret_cast<IMAGE_THUNK_DATA*>(base + dll->FirstThunk);
        for (; name->u1.AddressOfData; ++name, ++slot) {
            if (IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal))
                continue;
            const auto* const byName =
                reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + name->u1.AddressOfData);
            const Import import = {reinterpret_cast<const char*>(base + dll->Name),
                                   reinterpret_cast<const char*>(byName->Name)};
            if (visit(import, reinterpret_cast<void**>(&slot->u1.Function)))
                return;
        }
    }
}

void** FindImportSlot(HMODULE module, const char* function) {
    void** found = nullptr;
    VisitImports(module, [&](const Import& import, void** slot) {
        found = import.function == function ? slot : nullptr;
        return found != nullptr;
    });
    return found;
}

void* Exchange(void** slot, void* value) {
    DWORD protection = 0;
    VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &protection);
    void* const old = *slot;
    *slot = value;
    VirtualProtect(slot, sizeof *slot, protection, &protection);
    return old;
}

}  // namespace

ImportPatch::ImportPatch(HMODULE module, const char* function, void* replacement)
    : m_slot(FindImportSlot(module, function)) {
    if (m_slot)
        m_original = Exchange(m_slot, replacement);
    else
        ADD_FAILURE() << "the module does not import " << function;
}

ImportPatch::~ImportPatch() {
    if (m_slot)
        Exchange(m_slot, m_original);
}

std::vector<Import> ImportsOf(HMODULE module) {
    std::vector<Import> imports;
    VisitImports(module, [&](const Import& import, void**) {
        imports.push_back(import);
        return false;
    });
    return imports;
}

}  // namespace kzp::test

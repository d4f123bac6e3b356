#include "installer/PrinterSetup.h"

namespace kzp {

PrinterSetup::PrinterSetup() : m_module(LoadLibraryW(L"printui.dll")) {
    if (m_module)
        m_entry =
            reinterpret_cast<Entry>(reinterpret_cast<void*>(GetProcAddress(m_module.Get(), "PrintUIEntryW")));
}

void PrinterSetup::Run(std::wstring commandLine) const {
    if (m_entry)
        m_entry(nullptr, nullptr, commandLine.data(), 0);
}

}  // namespace kzp

#include "installer/PrinterSetup.h"

#include "support/SystemLibrary.h"

namespace kzp {

PrinterSetup::PrinterSetup()
    : m_library(LoadSystemLibrary(L"printui.dll")),
      m_entry(FindFunction<Entry>(m_library, "PrintUIEntryW")) {}

void PrinterSetup::Run(std::wstring commandLine) const {
    if (m_entry)
        m_entry(nullptr, nullptr, commandLine.data(), 0);
}

}  // namespace kzp

#include "tools/standins/helpcontrol/HelpRecords.h"

namespace kzp::standins::help {

// The default value of the key is the path of the platform's help control.
RegisteredControl::RegisteredControl(const std::wstring& path, DWORD type)
    : m_key(CreateKey(HKEY_CLASSES_ROOT, L"CLSID\\{ADB880A6-D8FF-11CF-9377-00AA003B7A11}\\InprocServer32")),
      m_old(ReadValue(m_key, L"")) {
    WriteValue(m_key, L"", type, path.c_str(), (path.size() + 1) * sizeof(wchar_t));
}

RegisteredControl::~RegisteredControl() {
    if (m_old)
        WriteValue(m_key, L"", m_old->type, m_old->bytes.data(), m_old->bytes.size());
    else
        DeleteValue(m_key, L"");
}

}  // namespace kzp::standins::help

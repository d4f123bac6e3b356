#include "tools/standins/helpcontrol/HelpRecords.h"

#include "tools/standins/common/Journal.h"
#include "tools/standins/common/Registry.h"

namespace kzp::standins::help {

std::vector<std::wstring> Calls() {
    return Journal(HKEY_CURRENT_USER, kCallsKey).Read();
}

void ForgetCalls() {
    Journal(HKEY_CURRENT_USER, kCallsKey).Remove();
}

RegisteredControl::RegisteredControl(const std::wstring& path, DWORD type) {
    const Key key = CreateKey(HKEY_CLASSES_ROOT, kControlKey);
    const auto old = ReadValue(key, L"");
    m_hadValue = old.has_value();
    if (old) {
        m_oldType = old->type;
        m_oldBytes = old->bytes;
    }
    WriteValue(key, L"", type, path.c_str(), (path.size() + 1) * sizeof(wchar_t));
}

RegisteredControl::~RegisteredControl() {
    const Key key = CreateKey(HKEY_CLASSES_ROOT, kControlKey);
    if (m_hadValue)
        WriteValue(key, L"", m_oldType, m_oldBytes.data(), m_oldBytes.size());
    else
        DeleteValue(key, L"");
}

}  // namespace kzp::standins::help

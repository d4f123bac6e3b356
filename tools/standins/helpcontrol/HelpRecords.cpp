#include "tools/standins/helpcontrol/HelpRecords.h"

#include <cwchar>

#include "tools/standins/common/Journal.h"
#include "tools/standins/common/Registry.h"

namespace kzp::standins::help {

std::vector<Call> Calls() {
    std::vector<Call> calls;
    for (const std::wstring& entry : Journal(HKEY_CURRENT_USER, kCallsKey).Read()) {
        const size_t space = entry.find(L' ');
        calls.push_back({entry.substr(space + 1),
                         static_cast<UINT>(std::wcstoul(entry.substr(0, space).c_str(), nullptr, 10))});
    }
    return calls;
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

#include "tools/standins/common/Journal.h"

#include "tools/standins/common/Registry.h"

namespace kzp::standins {

MachineLock::MachineLock(const wchar_t* name) : m_mutex(CreateMutexW(nullptr, FALSE, name)) {
    // A holder that died has left at most an unfinished step behind, as a real machine would.
    if (m_mutex)
        WaitForSingleObject(m_mutex, INFINITE);
}

MachineLock::~MachineLock() {
    if (!m_mutex)
        return;
    ReleaseMutex(m_mutex);
    CloseHandle(m_mutex);
}

bool Journal::IsOpen() const {
    return static_cast<bool>(OpenKey(m_root, m_path));
}

void Journal::Open() const {
    CreateKey(m_root, m_path);
}

void Journal::Append(const std::wstring& entry) const {
    const MachineLock lock(L"KZP Stand-ins Journal");
    const Key key = CreateKey(m_root, m_path);
    DWORD entries = 0;
    if (key)
        RegQueryInfoKeyW(key.Get(), nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &entries, nullptr,
                         nullptr, nullptr, nullptr);
    WriteText(key, std::to_wstring(entries), entry);
}

std::vector<std::wstring> Journal::Read() const {
    const Key key = OpenKey(m_root, m_path);
    std::vector<std::wstring> entries;
    while (ReadValue(key, std::to_wstring(entries.size())))
        entries.push_back(ReadText(key, std::to_wstring(entries.size())));
    return entries;
}

void Journal::Remove() const {
    DeleteKey(m_root, m_path);
}

}  // namespace kzp::standins

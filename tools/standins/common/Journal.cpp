#include "tools/standins/common/Journal.h"

#include "tools/standins/common/Registry.h"

namespace kzp::standins {

MachineLock::MachineLock(const wchar_t* name) : m_mutex(CreateMutexW(nullptr, FALSE, name)) {
    // A holder that died has left at most an unfinished step behind, as a real machine would.
    WaitForSingleObject(m_mutex, INFINITE);
}

MachineLock::~MachineLock() {
    ReleaseMutex(m_mutex);
    CloseHandle(m_mutex);
}

void Journal::Start() const {
    Stop();
    CreateKey(m_root, m_path);
}

void Journal::Append(const std::wstring& entry) const {
    const MachineLock lock(L"KZP Stand-ins Journal");
    if (const Key key = OpenKey(m_root, m_path, KEY_READ | KEY_WRITE))
        WriteText(key, std::to_wstring(ValueNames(key).size()), entry);
}

std::vector<std::wstring> Journal::Read() const {
    const Key key = OpenKey(m_root, m_path);
    std::vector<std::wstring> entries;
    while (const auto entry = ReadValue(key, std::to_wstring(entries.size())))
        entries.push_back(entry->Text());
    return entries;
}

void Journal::Stop() const {
    DeleteKey(m_root, m_path);
}

}  // namespace kzp::standins

// A registry of the test's own.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

#include "tools/standins/common/Registry.h"

namespace kzp::test {

// Redirects this process's HKEY_CURRENT_USER and HKEY_LOCAL_MACHINE to fresh keys and sweeps them up again.
// Nothing of the machine's own registry is seen while it lives, and other processes do not see the
// redirection.
class ScratchRegistry {
  public:
    ScratchRegistry();
    ~ScratchRegistry();
    ScratchRegistry(const ScratchRegistry&) = delete;
    ScratchRegistry& operator=(const ScratchRegistry&) = delete;

    // The parent of the two keys, "User" and "Machine", below the real HKEY_CURRENT_USER.
    const std::wstring& Path() const { return m_path; }

    // From here on HKEY_CURRENT_USER is a key in which nothing can be created to last.
    static void RefuseUserKeys();

  private:
    const std::wstring m_path = L"Software\\KZP Tests\\" + std::to_wstring(GetCurrentProcessId());
};

using RegistryValue = standins::Value;

// What is stored, or nothing.
std::optional<RegistryValue> ReadValue(HKEY root, const wchar_t* path, const wchar_t* name);
bool KeyExists(HKEY root, const wchar_t* path);
void WriteValue(HKEY root, const wchar_t* path, const wchar_t* name, DWORD type, const void* data,
                size_t bytes);
void WriteText(HKEY root, const wchar_t* path, const wchar_t* name, const std::wstring& text);
void WriteDword(HKEY root, const wchar_t* path, const wchar_t* name, DWORD value);

// The per-user settings key, and the queue whose attributes decide over the companion application.
inline constexpr wchar_t kSettingsKey[] = L"SOFTWARE\\Brimlake\\KZPWriter\\3";
inline constexpr wchar_t kProductKey[] = L"SOFTWARE\\Brimlake\\KZPWriter";
inline constexpr wchar_t kQueueKey[] =
    L"SYSTEM\\CurrentControlSet\\Control\\Print\\Printers\\Brimlake KZP Writer for 2D";

}  // namespace kzp::test

// A registry of one program's own, and the product's keys in it.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

#include "tools/standins/common/Registry.h"

namespace kzp::standins {

// Redirects this process's HKEY_CURRENT_USER and HKEY_LOCAL_MACHINE to fresh keys and sweeps them up again.
// Nothing of the machine's own registry is seen while it lives, and other processes do not see the
// redirection. A redirection that fails ends the process, for it would write where it must not.
class ScratchRegistry {
  public:
    ScratchRegistry();
    ~ScratchRegistry();
    ScratchRegistry(const ScratchRegistry&) = delete;
    ScratchRegistry& operator=(const ScratchRegistry&) = delete;

    // The parent of the two keys, below the real HKEY_CURRENT_USER; another process that shares them begins
    // with Join.
    const std::wstring& Path() const { return m_path; }
    static void Join(const std::wstring& path);

    // From here on HKEY_CURRENT_USER is a key in which nothing can be created to last.
    static void RefuseUserKeys();

  private:
    const std::wstring m_path = L"Software\\KZP Tests\\" + std::to_wstring(GetCurrentProcessId());
};

// What is stored, or nothing.
std::optional<Value> ReadValue(HKEY root, const wchar_t* path, const wchar_t* name);
bool KeyExists(HKEY root, const wchar_t* path);

// These create the key where it is missing.
void WriteValue(HKEY root, const wchar_t* path, const wchar_t* name, DWORD type, const void* data,
                size_t bytes);
void WriteText(HKEY root, const wchar_t* path, const wchar_t* name, const std::wstring& text);
void WriteDword(HKEY root, const wchar_t* path, const wchar_t* name, DWORD value);

// The per-user settings key, and the queue whose attributes decide over the companion application.
inline constexpr wchar_t kSettingsKey[] = L"SOFTWARE\\Brimlake\\KZPWriter\\3";
inline constexpr wchar_t kProductKey[] = L"SOFTWARE\\Brimlake\\KZPWriter";
inline constexpr wchar_t kQueueKey[] =
    L"SYSTEM\\CurrentControlSet\\Control\\Print\\Printers\\Brimlake KZP Writer for 2D";

}  // namespace kzp::standins

#include "tools/standins/spooler/Calls.h"

#include "tools/standins/common/Registry.h"

namespace kzp::standins::spooler {

DWORD DemandedFailure(const wchar_t* function) {
    const std::wstring path = std::wstring(kFailKey) + L"\\" + function;
    const Key key = OpenKey(HKEY_LOCAL_MACHINE, path, KEY_READ | KEY_WRITE);
    if (!key)
        return ERROR_SUCCESS;
    if (const DWORD passing = ReadDword(key, L"After")) {
        WriteDword(key, L"After", passing - 1);
        return ERROR_SUCCESS;
    }
    return ReadDword(key, L"Error");
}

void LogCall(const wchar_t* function, const wchar_t* subject) {
    const Journal log(HKEY_LOCAL_MACHINE, kLogKey);
    if (!log.IsOpen())
        return;
    log.Append(IsEmpty(subject) ? std::wstring(function) : std::wstring(function) + L" " + subject);
}

}  // namespace kzp::standins::spooler

// Tells a test that it talks to the stand-in and not to the platform's spooler.
extern "C" BOOL WINAPI KzpStandInSpooler() {
    return TRUE;
}

#include "tools/standins/spooler/Calls.h"

#include <new>

#include "tools/standins/common/Journal.h"
#include "tools/standins/common/Registry.h"

namespace kzp::standins::spooler {

namespace {

void FailOnDemand(const wchar_t* function) {
    const Key key =
        OpenKey(HKEY_LOCAL_MACHINE, std::wstring(kFailKey) + L"\\" + function, KEY_READ | KEY_WRITE);
    if (const DWORD passing = ReadDword(key, L"After"))
        WriteDword(key, L"After", passing - 1);
    else
        Require(!key, ReadDword(key, L"Error"));
}

}  // namespace

DWORD Answer(const wchar_t* function, const std::function<void()>& body) {
    try {
        const MachineLock lock(kLockName);
        FailOnDemand(function);
        body();
        return ERROR_SUCCESS;
    } catch (const Refusal& refusal) {
        return refusal.code;
    } catch (const std::bad_alloc&) {
        return ERROR_NOT_ENOUGH_MEMORY;
    }
}

DWORD AnswerChange(const wchar_t* function, const wchar_t* subject, const std::function<void()>& body) {
    const MachineLock lock(kLockName);
    Journal(HKEY_LOCAL_MACHINE, kLogKey)
        .Append(IsEmpty(subject) ? std::wstring(function) : std::wstring(function) + L" " + subject);
    return Answer(function, body);
}

}  // namespace kzp::standins::spooler

// Tells a test that it talks to the stand-in and not to the platform's spooler.
extern "C" BOOL WINAPI KzpStandInSpooler() {
    return TRUE;
}

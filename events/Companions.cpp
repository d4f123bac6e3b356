#include "events/Companions.h"

#include <psapi.h>

#include <cwchar>
#include <iterator>

#include "core/InteractionApp.h"
#include "help/Help.h"
#include "support/Bounded.h"
#include "support/QuietDrives.h"
#include "support/RegistryKey.h"
#include "support/Shell.h"

namespace kzp {

namespace {

// The viewer is a 32-bit product; its view of the registry is named outright, whoever prints.
constexpr wchar_t kViewerKey[] = L"SOFTWARE\\Wow6432Node\\Brimlake\\Plansight\\ProductInfo";
constexpr wchar_t kViewerLocation[] = L"Location";

// Offered for both paths. These are bytes for buffers of 260 characters: a path of more than 129 characters
// is deliberately not read and counts as missing.
constexpr DWORD kPathBytes = MAX_PATH;

// Exactly the length of the longest companion's name.
constexpr size_t kMaxCompanionCharacters = 24;
static_assert(std::size(kInteractionAppName) - 1 == kMaxCompanionCharacters);

constexpr size_t kMaxProcesses = 1024;

// False when the value is missing or too long. The type is not looked at.
bool ReadPath(const wchar_t* keyPath, const wchar_t* valueName, wchar_t (&path)[MAX_PATH]) {
    DWORD bytes = kPathBytes;
    const RegistryKey key = RegistryKey::Open(HKEY_LOCAL_MACHINE, keyPath, KEY_READ);
    return key.Query(valueName, path, &bytes) == ERROR_SUCCESS;
}

bool Start(const wchar_t* file) {
    SHELLEXECUTEINFOW start = {};
    start.cbSize = sizeof start;
    // The shell's own message about a missing file is not switched off; this mask is all there ever was.
    start.fMask = SEE_MASK_NOCLOSEPROCESS;
    start.lpVerb = L"open";
    start.lpFile = file;
    start.nShow = SW_SHOWNOACTIVATE;
    const bool started = shell::Execute(start);
    // Asked for but not used.
    const UniqueKernelHandle process(start.hProcess);
    return started;
}

}  // namespace

bool LaunchCompanion(const wchar_t* exeName) {
    if (FindOtherProcessByName(exeName) != 0)
        return false;
    wchar_t path[MAX_PATH] = {};
    if (!ReadPath(kProductKey, kHelpFilePath, path) || path[0] == L'\0')
        return false;
    // A path without a backslash is started as it stands.
    if (CutAfterLastBackslash(path))
        AppendBounded(path, std::size(path), exeName, kMaxCompanionCharacters);
    return Start(path);
}

bool FindViewer(wchar_t* pathOut) {
    wchar_t path[MAX_PATH] = {};
    if (!ReadPath(kViewerKey, kViewerLocation, path))
        return false;
    // The folder is expected to end with a backslash; none is added.
    AppendBounded(path, std::size(path), kViewerName);
    WIN32_FIND_DATAW found;
    const QuietDrives quiet;
    const UniqueFind find(FindFirstFileW(path, &found));
    if (find && pathOut)
        std::wcscpy(pathOut, path);
    return static_cast<bool>(find);
}

bool GetProcessBaseName(DWORD pid, wchar_t* nameOut) {
    if (pid == 0 || !nameOut)
        return false;
    DWORD pids[kMaxProcesses];
    DWORD bytes = 0;
    if (!EnumProcesses(pids, sizeof pids, &bytes))
        return false;
    for (size_t i = 0; i < bytes / sizeof pids[0]; ++i) {
        if (pids[i] != pid)
            continue;
        const UniqueKernelHandle process(
            OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, pid));
        HMODULE first[1] = {};  // the executable file itself
        DWORD needed = 0;
        if (process && EnumProcessModules(process.Get(), first, sizeof first, &needed))
            return GetModuleBaseNameW(process.Get(), first[0], nameOut, MAX_PATH) != 0;
    }
    return false;
}

}  // namespace kzp

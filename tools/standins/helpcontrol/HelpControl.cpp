// Records what is asked of the help control and shows nothing.
#include <windows.h>

#include <new>

#include "tools/standins/common/Journal.h"
#include "tools/standins/helpcontrol/HelpRecords.h"

extern "C" HWND WINAPI HtmlHelpW(HWND, LPCWSTR address, UINT command, DWORD_PTR) {
    using namespace kzp::standins;
    try {
        // The command first: an address may hold any character.
        Journal(HKEY_CURRENT_USER, help::kCallsKey)
            .Append(std::to_wstring(command) + L" " + (address ? address : L""));
    } catch (const std::bad_alloc&) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    }
    return nullptr;  // no window was opened
}

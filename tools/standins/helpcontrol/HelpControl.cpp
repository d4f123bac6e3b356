// Records what is asked of the help control and shows nothing.
#include <windows.h>

#include <new>

#include "tools/standins/helpcontrol/HelpRecords.h"

extern "C" HWND WINAPI HtmlHelpW(HWND caller, LPCWSTR address, UINT command, DWORD_PTR data) {
    try {
        // The address last: it may hold any character.
        kzp::standins::help::calls.Append(std::wstring(caller ? L"owner " : L"") + L"command " +
                                          std::to_wstring(command) + (data ? L" data " : L" ") +
                                          (address ? address : L""));
    } catch (const std::bad_alloc&) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    }
    return nullptr;  // no window was opened
}

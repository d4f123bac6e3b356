// Calls that other parts of the platform make while printing, or for programs without Unicode. Nothing is
// printed here: they fail with ERROR_CALL_NOT_IMPLEMENTED, where a missing export would end the calling
// process.
#include <windows.h>
#include <winspool.h>

namespace {

// Zero is what all of these answer for a failure, as FALSE, as a null pointer and as job number.
template <class Result>
Result Refuse() {
    SetLastError(ERROR_CALL_NOT_IMPLEMENTED);
    return Result{};
}

}  // namespace

extern "C" {

BOOL WINAPI OpenPrinterA(LPSTR, LPHANDLE, LPPRINTER_DEFAULTSA) {
    return Refuse<BOOL>();
}
BOOL WINAPI GetPrinterA(HANDLE, DWORD, LPBYTE, DWORD, LPDWORD) {
    return Refuse<BOOL>();
}
BOOL WINAPI EnumPrintersA(DWORD, LPSTR, DWORD, LPBYTE, DWORD, LPDWORD, LPDWORD) {
    return Refuse<BOOL>();
}
BOOL WINAPI GetDefaultPrinterA(LPSTR, LPDWORD) {
    return Refuse<BOOL>();
}
BOOL WINAPI GetPrinterDriverA(HANDLE, LPSTR, DWORD, LPBYTE, DWORD, LPDWORD) {
    return Refuse<BOOL>();
}

// -1 is the failure of these two.
LONG WINAPI DocumentPropertiesA(HWND, HANDLE, LPSTR, PDEVMODEA, PDEVMODEA, DWORD) {
    return Refuse<LONG>() - 1;
}
int WINAPI DeviceCapabilitiesA(LPCSTR, LPCSTR, WORD, LPSTR, const DEVMODEA*) {
    return Refuse<int>() - 1;
}

// These answer the code itself.
DWORD WINAPI GetPrinterDataExA(HANDLE, LPCSTR, LPCSTR, LPDWORD, LPBYTE, DWORD, LPDWORD) {
    return ERROR_CALL_NOT_IMPLEMENTED;
}
DWORD WINAPI EnumPrinterDataExA(HANDLE, LPCSTR, LPBYTE, DWORD, LPDWORD, LPDWORD) {
    return ERROR_CALL_NOT_IMPLEMENTED;
}

LPWSTR WINAPI StartDocDlgW(HANDLE, DOCINFOW*) {
    return Refuse<LPWSTR>();
}
DWORD WINAPI StartDocPrinterW(HANDLE, DWORD, LPBYTE) {
    return Refuse<DWORD>();
}
BOOL WINAPI EndDocPrinter(HANDLE) {
    return Refuse<BOOL>();
}
BOOL WINAPI WritePrinter(HANDLE, LPVOID, DWORD, LPDWORD) {
    return Refuse<BOOL>();
}
BOOL WINAPI ReadPrinter(HANDLE, LPVOID, DWORD, LPDWORD) {
    return Refuse<BOOL>();
}
BOOL WINAPI AddPrintProcessorW(LPWSTR, LPWSTR, LPWSTR, LPWSTR) {
    return Refuse<BOOL>();
}
BOOL WINAPI EnumJobsW(HANDLE, DWORD, DWORD, DWORD, LPBYTE, DWORD, LPDWORD, LPDWORD) {
    return Refuse<BOOL>();
}

}  // extern "C"

#include "tests/sheet/WriteTrace.h"

#include <winspool.h>

#include <cstring>
#include <utility>

#include "tools/driverhost/Text.h"

namespace kzp::test {

namespace {

using driverhost::Format;

std::vector<std::wstring> g_lines;

std::wstring Contents(DWORD type, const BYTE* data, DWORD bytes) {
    if (type == REG_SZ)
        return std::wstring(reinterpret_cast<const wchar_t*>(data), bytes / sizeof(wchar_t));
    if (type == REG_DWORD && bytes == sizeof(DWORD)) {
        DWORD number;
        std::memcpy(&number, data, sizeof number);
        return Format(L"%lu", number);
    }
    return Format(L"%lu bytes", bytes);
}

LSTATUS WINAPI NoteSetting(HKEY key, LPCWSTR name, DWORD reserved, DWORD type, const BYTE* data,
                           DWORD bytes) {
    g_lines.push_back(name + (L"=" + Contents(type, data, bytes)));
    return RegSetValueExW(key, name, reserved, type, data, bytes);
}

DWORD WINAPI NotePrinterData(HANDLE printer, LPWSTR name, DWORD type, LPBYTE data, DWORD bytes) {
    std::wstring contents = Contents(type, data, bytes);
    float margins[4];
    if (type == REG_BINARY && bytes == sizeof margins) {
        std::memcpy(margins, data, sizeof margins);
        contents =
            Format(L"%.2f %.2f %.2f %.2f", static_cast<double>(margins[0]), static_cast<double>(margins[1]),
                   static_cast<double>(margins[2]), static_cast<double>(margins[3]));
    }
    g_lines.push_back(L"printer: " + (name + (L"=" + contents)));
    return SetPrinterDataW(printer, name, type, data, bytes);
}

WINBOOL WINAPI NoteForm(HANDLE printer, LPWSTR name, DWORD level, LPBYTE data) {
    const SIZEL size = reinterpret_cast<const FORM_INFO_1W*>(data)->Size;
    g_lines.push_back(Format(L"form: %ls=%.3fx%.3f", name, size.cx / 1000.0, size.cy / 1000.0));
    return SetFormW(printer, name, level, data);
}

}  // namespace

WriteTrace::WriteTrace(HMODULE plugIn)
    : m_settings(plugIn, "RegSetValueExW", AddressOf(&NoteSetting)),
      m_printerData(plugIn, "SetPrinterDataW", AddressOf(&NotePrinterData)),
      m_form(plugIn, "SetFormW", AddressOf(&NoteForm)) {
    g_lines.clear();
}

std::vector<std::wstring> WriteTrace::Take() {
    return std::exchange(g_lines, {});
}

}  // namespace kzp::test

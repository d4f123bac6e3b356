// Everything that the plug-in writes while the object lives, in one list and in order: settings, printer data
// and forms. For one thread.
#pragma once

#include <windows.h>
#include <winspool.h>

#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/ImportPatch.h"
#include "tools/driverhost/Text.h"

namespace kzp::test {

using Lines = std::vector<std::wstring>;

class WriteTrace {
  public:
    explicit WriteTrace(HMODULE plugIn)
        : m_settings(plugIn, "RegSetValueExW", AddressOf(&NoteSetting)),
          m_printerData(plugIn, "SetPrinterDataW", AddressOf(&NotePrinterData)),
          m_form(plugIn, "SetFormW", AddressOf(&NoteForm)) {
        s_lines.clear();
    }

    // "LaunchKZPView=YES", "OutputType=2", "FONTLIST=128 bytes", "printer: KZP Margin=12.70 0.00 0.00 0.00",
    // "form: User Defined=100.000x90.000".
    static Lines Take() { return std::exchange(s_lines, {}); }  // and forget them
    static inline HANDLE lastPrinter = nullptr;                 // whose data were written

  private:
    static std::wstring Contents(DWORD type, const BYTE* data, DWORD bytes) {
        DWORD number = 0;
        float margins[4] = {};
        if (type == REG_SZ)
            return {reinterpret_cast<const wchar_t*>(data), bytes / sizeof(wchar_t)};
        if (type == REG_DWORD && bytes == sizeof number) {
            std::memcpy(&number, data, bytes);
            return std::to_wstring(number);
        }
        if (bytes != sizeof margins)
            return std::to_wstring(bytes) + L" bytes";
        std::memcpy(margins, data, bytes);
        return driverhost::Format(L"%.2f %.2f %.2f %.2f", margins[0], margins[1], margins[2], margins[3]);
    }
    static LSTATUS WINAPI NoteSetting(HKEY key, LPCWSTR name, DWORD reserved, DWORD type, const BYTE* data,
                                      DWORD bytes) {
        s_lines.push_back(name + (L"=" + Contents(type, data, bytes)));
        return RegSetValueExW(key, name, reserved, type, data, bytes);
    }
    static DWORD WINAPI NotePrinterData(HANDLE printer, LPWSTR name, DWORD type, LPBYTE data, DWORD bytes) {
        s_lines.push_back(L"printer: " + (name + (L"=" + Contents(type, data, bytes))));
        lastPrinter = printer;
        return SetPrinterDataW(printer, name, type, data, bytes);
    }
    static WINBOOL WINAPI NoteForm(HANDLE printer, LPWSTR name, DWORD level, LPBYTE data) {
        const SIZEL size = reinterpret_cast<const FORM_INFO_1W*>(data)->Size;
        s_lines.push_back(
            driverhost::Format(L"form: %ls=%.3fx%.3f", name, size.cx / 1000.0, size.cy / 1000.0));
        return SetFormW(printer, name, level, data);
    }

    static inline Lines s_lines;
    ImportPatch m_settings, m_printerData, m_form;
};

}  // namespace kzp::test

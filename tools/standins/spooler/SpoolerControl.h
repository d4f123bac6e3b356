// How tests arrange the stand-in spooler and see what was asked of it. Everything here works across
// processes; a process that redirects HKEY_LOCAL_MACHINE has a spooler of its own. No verb of this header
// counts as a call of the program under test: none is logged or made to fail.
#pragma once

#include <windows.h>
#include <winspool.h>

#include <string>
#include <vector>

namespace kzp::standins::spooler {

// True when the calls of this process really reach the stand-in.
bool IsInPlace();

// Makes calls of `function` (exported name, for instance L"SetFormW") behind the next `after` ones fail with
// `error` without any effect. A new order replaces the former one.
void FailCall(const std::wstring& function, DWORD error, DWORD after = 0);
void ClearFailures();

// The log holds the changing calls in order, each with its chief argument ("SetPrinterDataW KZP Margin",
// "SetPrinterW 2"), whether or not they succeeded, and those of the printer set-up ("PrintUIEntryW /dd ...").
void StartLog();
std::vector<std::wstring> ReadLog();
void StopLog();                        // and forget it
void Note(const std::wstring& entry);  // the test's own, among the calls; dropped when there is no log

struct PrinterSetUp {
    std::wstring name;
    std::wstring driver = L"Brimlake KZP Writer";
    const DEVMODEW* deviceMode = nullptr;  // with dmDriverExtra bytes behind it; null: the printer has none
};

// Sets up a printer together with its port and driver. One that exists is replaced, printer data included.
void SetUpPrinter(const PrinterSetUp& printer);
void RemovePrinter(const std::wstring& name);

void RemoveForm(const std::wstring& name);

}  // namespace kzp::standins::spooler

#include <gtest/gtest.h>

#include <functional>

#include "support/Spooler.h"
#include "tests/support/ScratchRegistry.h"
#include "tools/standins/spooler/SpoolerControl.h"

namespace kzp {
namespace {

using namespace standins;

TEST(StandInSpooler, RefusesWhatTheSystemsOwnDoes) {
    ASSERT_TRUE(spooler::IsInPlace()) << "the platform's own spooler was loaded";
    const test::ScratchRegistry registry;
    spooler::SetUpPrinter({.name = L"Printer"});
    const UniquePrinter printer = OpenPrinterWithAllAccess(L"Printer");
    PRINTER_DEFAULTSW useOnly = {nullptr, nullptr, PRINTER_ACCESS_USE};
    UniquePrinter used;
    OpenPrinterW(SpoolerText(L"Printer"), used.Put(), &useOnly);
    const HANDLE closed = OpenPrinterWithAllAccess(L"Printer").Get();

    BYTE info[4096];
    DWORD needed = 0;
    ASSERT_TRUE(GetPrinterW(used.Get(), 2, info, sizeof info, &needed));
    const auto opens = [](const wchar_t* name) { return bool(OpenPrinterWithAllAccess(name)); };
    const auto form = [](auto call, const wchar_t* name, LONG height) {
        FORM_INFO_1W record = {FORM_USER, SpoolerText(name), {215900, height}, {0, 0, 215900, height}};
        return call(reinterpret_cast<BYTE*>(&record));
    };
    const auto add = [&](const UniquePrinter& to) {
        return [&](BYTE* data) { return AddFormW(to.Get(), 1, data); };
    };
    const auto set = [&](const wchar_t* name) {
        return [&printer, name](BYTE* data) { return SetFormW(printer.Get(), SpoolerText(name), 1, data); };
    };
    const struct {
        DWORD error;
        std::function<BOOL()> call;
    } cases[] = {
        {ERROR_INVALID_PRINTER_NAME, [&] { return opens(L"No Such Printer"); }},
        {ERROR_INVALID_PRINTER_NAME, [&] { return opens(L""); }},
        {ERROR_INVALID_PRINTER_NAME, [&] { return opens(L"Printer\\PrinterDriverData"); }},
        {ERROR_INVALID_HANDLE, [&] { return GetPrinterW(closed, 2, nullptr, 0, &needed); }},
        {ERROR_INVALID_HANDLE, [&] { return ClosePrinter(closed); }},
        {ERROR_INVALID_HANDLE, [&] { return ClosePrinter(nullptr); }},
        {ERROR_ACCESS_DENIED, [&] { return SetPrinterW(used.Get(), 2, info, 0); }},
        {ERROR_ACCESS_DENIED, [&] { return form(add(used), L"Mine", 1000); }},
        {ERROR_INSUFFICIENT_BUFFER, [&] { return GetPrinterW(used.Get(), 2, info, needed - 1, &needed); }},
        // The built-in forms stand, and each name is there once.
        {ERROR_INVALID_PARAMETER, [&] { return form(set(L"A4"), L"A4", 1000); }},
        {ERROR_INVALID_FORM_NAME, [&] { return form(set(L"Mine"), L"Mine", 1000); }},
        {ERROR_SUCCESS, [&] { return form(add(printer), L"Mine", 266700); }},
        {ERROR_FILE_EXISTS, [&] { return form(add(printer), L"MINE", 1000); }},
        {ERROR_INVALID_FORM_SIZE, [&] { return form(set(L"Mine"), L"Mine", 0); }},
    };
    for (const auto& [error, call] : cases)
        EXPECT_EQ(error, call() ? ERROR_SUCCESS : GetLastError());
    EXPECT_EQ(DWORD{ERROR_ACCESS_DENIED}, SetPrinterDataW(used.Get(), SpoolerText(L"V"), REG_DWORD, info, 4));
}

}  // namespace
}  // namespace kzp

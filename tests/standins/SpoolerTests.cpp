#include <gtest/gtest.h>
#include <windows.h>
#include <winspool.h>

#include "support/UniqueHandle.h"
#include "tests/support/ScratchRegistry.h"
#include "tools/standins/spooler/SpoolerControl.h"

namespace kzp {
namespace {

using namespace standins;

constexpr wchar_t kPrinter[] = L"Stand-in Printer";

wchar_t* Changeable(const wchar_t* text) {
    return const_cast<wchar_t*>(text);
}

UniquePrinter Open(const wchar_t* name, ACCESS_MASK access = PRINTER_ALL_ACCESS) {
    PRINTER_DEFAULTSW defaults{nullptr, nullptr, access};
    UniquePrinter printer;
    OpenPrinterW(Changeable(name), printer.Put(), &defaults);
    return printer;
}

FORM_INFO_1W UserForm(const wchar_t* name, LONG width, LONG height) {
    return {FORM_USER, Changeable(name), {width, height}, {0, 0, width, height}};
}

bool AddUserForm(HANDLE handle, FORM_INFO_1W form) {
    return AddFormW(handle, 1, reinterpret_cast<BYTE*>(&form));
}

bool SetUserForm(HANDLE handle, const wchar_t* name, FORM_INFO_1W form) {
    return SetFormW(handle, Changeable(name), 1, reinterpret_cast<BYTE*>(&form));
}

class StandInSpooler : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(spooler::IsInPlace()) << "the platform's own spooler was loaded";
        spooler::SetUpPrinter({.name = kPrinter});
    }

    test::ScratchRegistry m_registry;
};

TEST_F(StandInSpooler, RefusesWhatTheSystemsOwnDoes) {
    for (const wchar_t* const name : {L"No Such Printer", L"", L"Stand-in Printer\\PrinterDriverData"}) {
        EXPECT_FALSE(Open(name)) << name;
        EXPECT_EQ(DWORD{ERROR_INVALID_PRINTER_NAME}, GetLastError()) << name;
    }
    UniquePrinter printer = Open(kPrinter);
    const HANDLE closed = printer.Get();
    printer.Reset();
    DWORD needed = 0;
    for (const HANDLE handle : {closed, HANDLE{nullptr}, reinterpret_cast<HANDLE>(ULONG_PTR{1})}) {
        EXPECT_FALSE(GetPrinterW(handle, 2, nullptr, 0, &needed));
        EXPECT_EQ(DWORD{ERROR_INVALID_HANDLE}, GetLastError());
        EXPECT_FALSE(ClosePrinter(handle));
    }

    // A handle that was opened for use only.
    printer = Open(kPrinter, PRINTER_ACCESS_USE);
    BYTE info[4096];
    ASSERT_TRUE(GetPrinterW(printer.Get(), 2, info, sizeof info, &needed));
    EXPECT_FALSE(SetPrinterW(printer.Get(), 2, info, 0));
    EXPECT_EQ(DWORD{ERROR_ACCESS_DENIED}, GetLastError());
    EXPECT_EQ(DWORD{ERROR_ACCESS_DENIED},
              SetPrinterDataW(printer.Get(), Changeable(L"V"), REG_DWORD, info, 4));
    EXPECT_FALSE(AddUserForm(printer.Get(), UserForm(L"Mine", 1000, 1000)));
    EXPECT_EQ(DWORD{ERROR_ACCESS_DENIED}, GetLastError());

    // Forms: the built-in ones stand, and each name is there once.
    printer = Open(kPrinter);
    EXPECT_FALSE(SetUserForm(printer.Get(), L"A4", UserForm(L"A4", 1000, 1000)));
    EXPECT_EQ(DWORD{ERROR_INVALID_PARAMETER}, GetLastError());
    EXPECT_FALSE(SetUserForm(printer.Get(), L"Mine", UserForm(L"Mine", 1000, 1000)));
    EXPECT_EQ(DWORD{ERROR_INVALID_FORM_NAME}, GetLastError());
    EXPECT_TRUE(AddUserForm(printer.Get(), UserForm(L"Mine", 215900, 266700)));
    EXPECT_FALSE(AddUserForm(printer.Get(), UserForm(L"MINE", 1000, 1000)));
    EXPECT_EQ(DWORD{ERROR_FILE_EXISTS}, GetLastError());
    EXPECT_FALSE(AddUserForm(printer.Get(), UserForm(L"Flat", 215900, 0)));
    EXPECT_EQ(DWORD{ERROR_INVALID_FORM_SIZE}, GetLastError());
}

}  // namespace
}  // namespace kzp

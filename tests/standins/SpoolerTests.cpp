#include <gtest/gtest.h>
#include <windows.h>
#include <winspool.h>

#include <cstddef>
#include <cstring>

#include "support/UniqueHandle.h"
#include "tests/support/Files.h"
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

// One answer of a call with the spooler's buffer protocol: asks for the size, then for the content.
template <class Info, class Ask>
struct Answered {
    explicit Answered(Ask ask) {
        DWORD needed = 0;
        EXPECT_FALSE(ask(nullptr, 0, &needed));
        EXPECT_EQ(DWORD{ERROR_INSUFFICIENT_BUFFER}, GetLastError());
        bytes.resize(needed);
        if (needed < sizeof(Info))
            return;
        EXPECT_FALSE(ask(bytes.data(), needed - 1, &needed));
        EXPECT_EQ(DWORD{ERROR_INSUFFICIENT_BUFFER}, GetLastError());
        EXPECT_EQ(bytes.size(), needed);
        ok = ask(bytes.data(), needed, &needed);
    }
    const Info* operator->() const { return reinterpret_cast<const Info*>(bytes.data()); }

    std::vector<BYTE> bytes;
    bool ok = false;
};

template <class Info, class Ask>
Answered<Info, Ask> AskFor(Ask ask) {
    return Answered<Info, Ask>(ask);
}

auto ReadPrinter2(HANDLE printer) {
    return AskFor<PRINTER_INFO_2W>([printer](BYTE* buffer, DWORD bytes, DWORD* needed) {
        return GetPrinterW(printer, 2, buffer, bytes, needed);
    });
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

SIZEL FormSize(HANDLE handle, const wchar_t* name) {
    BYTE buffer[256];
    DWORD needed = 0;
    if (!GetFormW(handle, Changeable(name), 1, buffer, sizeof buffer, &needed))
        return {};
    return reinterpret_cast<const FORM_INFO_1W*>(buffer)->Size;
}

class StandInSpooler : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(spooler::IsInPlace()) << "the platform's own spooler was loaded";
        spooler::SetUpPrinter({.name = kPrinter, .attributes = 0x240});
    }

    test::ScratchRegistry m_registry;
};

TEST_F(StandInSpooler, HandsOutAPrinterWithItsDeviceMode) {
    struct {
        DEVMODEW head;
        BYTE extra[8];
    } mode{};
    mode.head.dmSize = sizeof mode.head;
    mode.head.dmDriverExtra = sizeof mode.extra;
    mode.head.dmPrintQuality = 600;
    mode.extra[7] = 0x5A;
    spooler::SetUpPrinter({.name = L"With Mode", .deviceMode = &mode.head});

    const auto info = ReadPrinter2(Open(L"With Mode").Get());
    ASSERT_TRUE(info.ok);
    EXPECT_STREQ(L"With Mode", info->pPrinterName);
    EXPECT_STREQ(L"KZP:", info->pPortName);
    ASSERT_NE(nullptr, info->pDevMode);
    EXPECT_EQ(0, std::memcmp(&mode, info->pDevMode, offsetof(decltype(mode), extra) + sizeof mode.extra));
    // Everything lies within the buffer.
    const auto* const end =
        reinterpret_cast<const BYTE*>(info->pDevMode) + sizeof mode.head + sizeof mode.extra;
    EXPECT_LE(end, info.bytes.data() + info.bytes.size());

    EXPECT_EQ(nullptr, ReadPrinter2(Open(kPrinter).Get())->pDevMode);
    // A record that was cut short counts as none.
    test::WriteValue(HKEY_LOCAL_MACHINE,
                     L"SYSTEM\\CurrentControlSet\\Control\\Print\\Printers\\Stand-in Printer",
                     L"Default DevMode", REG_BINARY, &mode, sizeof mode.head);
    EXPECT_EQ(nullptr, ReadPrinter2(Open(kPrinter).Get())->pDevMode);
}

TEST_F(StandInSpooler, ChangesAPrinterOnlyToWhatExistsAndForAdministrators) {
    const UniquePrinter printer = Open(kPrinter);
    auto info = ReadPrinter2(printer.Get());
    ASSERT_TRUE(info.ok);
    auto record = *info.operator->();
    auto* const data = reinterpret_cast<BYTE*>(&record);

    record.pPortName = Changeable(L"Nowhere");
    EXPECT_FALSE(SetPrinterW(printer.Get(), 2, data, 0));
    EXPECT_EQ(DWORD{ERROR_UNKNOWN_PORT}, GetLastError());

    PORT_INFO_1W port{Changeable(L"Elsewhere")};
    using AddPortExW = BOOL(WINAPI*)(LPWSTR, DWORD, LPBYTE, LPWSTR);
    const auto addPort = reinterpret_cast<AddPortExW>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"winspool.drv"), "AddPortExW")));
    ASSERT_NE(nullptr, addPort);
    EXPECT_TRUE(addPort(nullptr, 1, reinterpret_cast<BYTE*>(&port), Changeable(L"Local Port")));
    EXPECT_FALSE(addPort(nullptr, 1, reinterpret_cast<BYTE*>(&port), Changeable(L"Local Port")));
    EXPECT_EQ(DWORD{ERROR_INVALID_PARAMETER}, GetLastError());
    record.pPortName = port.pName;
    record.Attributes = 0x242;
    EXPECT_TRUE(SetPrinterW(printer.Get(), 2, data, 0)) << GetLastError();
    EXPECT_STREQ(L"Elsewhere", ReadPrinter2(printer.Get())->pPortName);
    // Programs that look into the registry see the same.
    EXPECT_EQ(0x242u,
              test::ReadValue(HKEY_LOCAL_MACHINE,
                              L"SYSTEM\\CurrentControlSet\\Control\\Print\\Printers\\Stand-in Printer",
                              L"Attributes")
                  ->Dword());
    EXPECT_FALSE(DeletePortW(nullptr, nullptr, port.pName));
    EXPECT_EQ(DWORD{ERROR_BUSY}, GetLastError());

    const UniquePrinter user = Open(kPrinter, PRINTER_ACCESS_USE);
    EXPECT_FALSE(SetPrinterW(user.Get(), 2, data, 0));
    EXPECT_EQ(DWORD{ERROR_ACCESS_DENIED}, GetLastError());
    EXPECT_EQ(DWORD{ERROR_ACCESS_DENIED}, SetPrinterDataW(user.Get(), Changeable(L"V"), REG_DWORD, data, 4));
}

TEST_F(StandInSpooler, RefusesWrongNamesAndHandles) {
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
        EXPECT_EQ(DWORD{ERROR_INVALID_HANDLE},
                  GetPrinterDataW(handle, Changeable(L"V"), nullptr, nullptr, 0, &needed));
        EXPECT_FALSE(ClosePrinter(handle));
    }
    printer = Open(kPrinter);
    spooler::RemovePrinter(kPrinter);
    EXPECT_FALSE(GetPrinterW(printer.Get(), 2, nullptr, 0, &needed));
    EXPECT_EQ(DWORD{ERROR_PRINTER_DELETED}, GetLastError());
}

TEST_F(StandInSpooler, KeepsPrinterData) {
    const UniquePrinter printer = Open(kPrinter);
    BYTE margins[16] = {1, 2, 3};
    BYTE read[16] = {};
    DWORD type = 0, needed = 0;
    wchar_t* const name = Changeable(L"KZP Margin");
    EXPECT_EQ(DWORD{ERROR_FILE_NOT_FOUND},
              GetPrinterDataW(printer.Get(), name, &type, read, sizeof read, &needed));
    EXPECT_EQ(DWORD{ERROR_SUCCESS},
              SetPrinterDataW(printer.Get(), name, REG_BINARY, margins, sizeof margins));
    EXPECT_EQ(DWORD{ERROR_MORE_DATA}, GetPrinterDataW(printer.Get(), name, &type, read, 15, &needed));
    EXPECT_EQ(16u, needed);
    EXPECT_EQ(0, read[0]) << "a buffer that is too small was written to";
    EXPECT_EQ(DWORD{ERROR_SUCCESS},
              GetPrinterDataW(printer.Get(), name, nullptr, read, sizeof read, &needed));
    EXPECT_EQ(0, std::memcmp(margins, read, sizeof read));
    EXPECT_EQ(DWORD{ERROR_SUCCESS}, DeletePrinterDataW(printer.Get(), name));
    EXPECT_EQ(DWORD{ERROR_FILE_NOT_FOUND}, DeletePrinterDataW(printer.Get(), name));
}

TEST_F(StandInSpooler, KeepsUserFormsBesideTheBuiltInOnes) {
    const UniquePrinter printer = Open(kPrinter);
    EXPECT_EQ(210000, FormSize(printer.Get(), L"A4").cx);
    EXPECT_FALSE(SetUserForm(printer.Get(), L"A4", UserForm(L"A4", 1000, 1000)));
    EXPECT_EQ(DWORD{ERROR_INVALID_PARAMETER}, GetLastError());
    EXPECT_FALSE(SetUserForm(printer.Get(), L"Mine", UserForm(L"Mine", 1000, 1000)));
    EXPECT_EQ(DWORD{ERROR_INVALID_FORM_NAME}, GetLastError());

    EXPECT_TRUE(AddUserForm(printer.Get(), UserForm(L"Mine", 215900, 266700)));
    EXPECT_FALSE(AddUserForm(printer.Get(), UserForm(L"MINE", 1000, 1000)));
    EXPECT_EQ(DWORD{ERROR_FILE_EXISTS}, GetLastError());
    EXPECT_FALSE(AddUserForm(printer.Get(), UserForm(L"Flat", 215900, 0)));
    EXPECT_EQ(DWORD{ERROR_INVALID_FORM_SIZE}, GetLastError());
    EXPECT_FALSE(AddUserForm(Open(kPrinter, PRINTER_ACCESS_USE).Get(), UserForm(L"Other", 1000, 1000)));
    EXPECT_EQ(DWORD{ERROR_ACCESS_DENIED}, GetLastError());

    EXPECT_TRUE(SetUserForm(printer.Get(), L"mine", UserForm(L"Mine", 100000, 90000)));
    const auto form = AskFor<FORM_INFO_1W>([&](BYTE* buffer, DWORD bytes, DWORD* needed) {
        return GetFormW(printer.Get(), Changeable(L"Mine"), 1, buffer, bytes, needed);
    });
    ASSERT_TRUE(form.ok);
    EXPECT_STREQ(L"Mine", form->pName);
    EXPECT_EQ(90000, form->Size.cy);
    EXPECT_EQ(90000, form->ImageableArea.bottom);
    EXPECT_TRUE(DeleteFormW(printer.Get(), Changeable(L"Mine")));
    EXPECT_EQ(0, FormSize(printer.Get(), L"Mine").cx);
}

TEST_F(StandInSpooler, AcceptsOnlyMonitorsThatCanBeLoaded) {
    const auto add = [](const wchar_t* environment, const wchar_t* dll) -> DWORD {
        MONITOR_INFO_2W monitor{Changeable(L"Test Port"), Changeable(environment), Changeable(dll)};
        return AddMonitorW(nullptr, 2, reinterpret_cast<BYTE*>(&monitor)) ? ERROR_SUCCESS : GetLastError();
    };
    EXPECT_EQ(DWORD{ERROR_INVALID_ENVIRONMENT}, add(L"Windows NT x86", L"KZPPortMonitor.dll"));
    EXPECT_EQ(DWORD{ERROR_MOD_NOT_FOUND}, add(nullptr, L"no-such-file.dll"));
    EXPECT_EQ(DWORD{ERROR_PROC_NOT_FOUND}, add(nullptr, L"StandInHelpControl.dll"));
    EXPECT_EQ(DWORD{ERROR_SUCCESS}, add(L"Windows x64", L"KZPPortMonitor.dll"));
    EXPECT_EQ(DWORD{ERROR_PRINT_MONITOR_ALREADY_INSTALLED}, add(nullptr, L"KZPPortMonitor.dll"));

    DWORD returned = 0;
    const auto monitors = AskFor<MONITOR_INFO_2W>([&](BYTE* buffer, DWORD bytes, DWORD* needed) {
        return EnumMonitorsW(nullptr, 2, buffer, bytes, needed, &returned);
    });
    ASSERT_TRUE(monitors.ok);
    ASSERT_EQ(2u, returned);
    EXPECT_STREQ(L"Local Port", monitors->pName);
    EXPECT_STREQ(L"KZPPortMonitor.dll", (monitors.operator->() + 1)->pDLLName);
    EXPECT_TRUE(DeleteMonitorW(nullptr, nullptr, Changeable(L"TEST PORT")));
    EXPECT_FALSE(DeleteMonitorW(nullptr, nullptr, Changeable(L"Test Port")));
    EXPECT_EQ(DWORD{ERROR_UNKNOWN_PRINT_MONITOR}, GetLastError());
}

TEST_F(StandInSpooler, FailsOnDemandAndLogsWhatWasAsked) {
    const UniquePrinter printer = Open(kPrinter);
    BYTE data[4] = {};
    const auto set = [&](const wchar_t* name) {
        return SetPrinterDataW(printer.Get(), Changeable(name), REG_BINARY, data, sizeof data);
    };
    spooler::StartLog();
    spooler::FailCall(L"SetPrinterDataW", ERROR_DISK_FULL, 1, 1);
    EXPECT_EQ(DWORD{ERROR_SUCCESS}, set(L"First"));
    EXPECT_EQ(DWORD{ERROR_DISK_FULL}, set(L"Second"));
    EXPECT_EQ(DWORD{ERROR_SUCCESS}, set(L"Third"));
    DWORD needed = 0;
    EXPECT_EQ(DWORD{ERROR_FILE_NOT_FOUND},
              GetPrinterDataW(printer.Get(), Changeable(L"Second"), nullptr, nullptr, 0, &needed));

    spooler::FailCall(L"AddFormW", ERROR_ACCESS_DENIED);
    for (int time = 0; time < 2; ++time) {
        EXPECT_FALSE(AddUserForm(printer.Get(), UserForm(L"Mine", 1000, 1000)));
        EXPECT_EQ(DWORD{ERROR_ACCESS_DENIED}, GetLastError());
    }
    spooler::ClearFailures();
    EXPECT_TRUE(AddUserForm(printer.Get(), UserForm(L"Mine", 1000, 1000)));

    const std::vector<std::wstring> expected = {L"SetPrinterDataW First", L"SetPrinterDataW Second",
                                                L"SetPrinterDataW Third", L"AddFormW Mine",
                                                L"AddFormW Mine",         L"AddFormW Mine"};
    EXPECT_EQ(expected, spooler::ReadLog());
    spooler::StopLog();
    EXPECT_EQ(DWORD{ERROR_SUCCESS}, set(L"Fourth"));
    EXPECT_TRUE(spooler::ReadLog().empty());
}

// The machine's spooler, which this process shares with a copy of itself that it starts.
constexpr wchar_t kShared[] = L"Stand-in Shared Printer";
constexpr wchar_t kSharedForm[] = L"Stand-in Shared Form";
constexpr wchar_t kCopyMark[] = L"KZP_TEST_COPY";  // set in the copy's environment

void PlayTheCopy() {
    const UniquePrinter printer = Open(kShared);
    ASSERT_TRUE(printer);
    EXPECT_TRUE(AddUserForm(printer.Get(), UserForm(kSharedForm, 123000, 45000)));
    DWORD own = GetCurrentProcessId();
    auto* const pid = reinterpret_cast<BYTE*>(&own);
    wchar_t* const name = Changeable(L"Pid");
    EXPECT_EQ(DWORD{ERROR_DISK_FULL}, SetPrinterDataW(printer.Get(), name, REG_DWORD, pid, sizeof own));
    EXPECT_EQ(DWORD{ERROR_SUCCESS}, SetPrinterDataW(printer.Get(), name, REG_DWORD, pid, sizeof own));
}

TEST(StandInSpoolerElsewhere, IsOneSpoolerForAllProcesses) {
    if (GetEnvironmentVariableW(kCopyMark, nullptr, 0))
        return PlayTheCopy();
    spooler::SetUpPrinter({.name = kShared});
    spooler::RemoveForm(kSharedForm);
    spooler::FailCall(L"SetPrinterDataW", ERROR_DISK_FULL, 1);
    const UniquePrinter printer = Open(kShared);
    EXPECT_EQ(0, FormSize(printer.Get(), kSharedForm).cx);

    std::wstring command = L"\"" + test::BesideExe(L"standins_tests.exe") +
                           L"\" --gtest_filter=StandInSpoolerElsewhere.IsOneSpoolerForAllProcesses";
    SetEnvironmentVariableW(kCopyMark, L"1");
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION child{};
    ASSERT_TRUE(CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                               &startup, &child));
    SetEnvironmentVariableW(kCopyMark, nullptr);
    const UniqueKernelHandle process(child.hProcess), thread(child.hThread);
    ASSERT_EQ(WAIT_OBJECT_0, WaitForSingleObject(process.Get(), 30000));
    DWORD exitCode = 1;
    GetExitCodeProcess(process.Get(), &exitCode);
    EXPECT_EQ(0u, exitCode);

    EXPECT_EQ(123000, FormSize(printer.Get(), kSharedForm).cx);
    DWORD pid = 0, needed = 0;
    EXPECT_EQ(DWORD{ERROR_SUCCESS}, GetPrinterDataW(printer.Get(), Changeable(L"Pid"), nullptr,
                                                    reinterpret_cast<BYTE*>(&pid), sizeof pid, &needed));
    EXPECT_EQ(child.dwProcessId, pid);
    spooler::ClearFailures();
    spooler::RemoveForm(kSharedForm);
    spooler::RemovePrinter(kShared);
}

}  // namespace
}  // namespace kzp

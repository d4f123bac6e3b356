#include "tests/events/PrintingMachine.h"

#include <gtest/gtest.h>
#include <tlhelp32.h>

#include <cwchar>

#include "driverkit/printoem.h"
#include "support/UniqueHandle.h"
#include "tools/standins/companions/Companions.h"

namespace kzp::test {

size_t CountProcesses(const wchar_t* name) {
    const UniqueFile snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    PROCESSENTRY32W process = {};
    process.dwSize = sizeof process;
    size_t count = 0;
    for (BOOL more = Process32FirstW(snapshot.Get(), &process); more;
         more = Process32NextW(snapshot.Get(), &process))
        count += _wcsicmp(process.szExeFile, name) == 0 ? 1u : 0u;
    return count;
}

PrintingMachine::PrintingMachine() : m_object(m_dll.Create()) {
    SetQueueAttributes(PRINTER_ATTRIBUTE_LOCAL);
    SetHelpPath(m_folder.File(L"KZPWriter.chm"));
    SetViewerOption(L"YES");
    Install(kInteraction);
    Install(kLauncher);
}

PrintingMachine::~PrintingMachine() {
    EndCompanions();
    m_object->Release();
}

void PrintingMachine::SetQueueAttributes(DWORD attributes) {
    WriteDword(HKEY_LOCAL_MACHINE, kQueueKey, L"Attributes", attributes);
}

void PrintingMachine::SetHelpPath(const std::wstring& path) {
    WriteText(HKEY_LOCAL_MACHINE, kProductKey, L"HelpFilePath", path);
}

void PrintingMachine::SetViewerOption(const std::wstring& text) {
    WriteText(HKEY_CURRENT_USER, kSettingsKey, L"LaunchKZPView", text);
}

void PrintingMachine::InstallViewer() {
    Install(kViewer);
    SetViewerLocation(Folder() + L"\\");
}

void PrintingMachine::SetViewerLocation(const std::wstring& folder) {
    WriteText(HKEY_LOCAL_MACHINE, kViewerKey, L"Location", folder);
}

std::wstring PrintingMachine::Install(const std::wstring& name) {
    m_installed.push_back(name);
    std::wstring path = standins::PlaceCompanion(Folder(), name, standins::kDoesNothing);
    EXPECT_FALSE(path.empty());
    return path;
}

void PrintingMachine::Run(const std::wstring& name) {
    EXPECT_TRUE(standins::StartCompanion(m_folder.File(name)));
    EXPECT_TRUE(standins::WaitReady(name));
}

void PrintingMachine::EndCompanions() {
    // One that has only just been started would not hear that it shall end.
    for (const std::wstring& name : m_installed)
        EXPECT_TRUE(CountProcesses(name.c_str()) == 0 || standins::WaitReady(name));
    EXPECT_TRUE(standins::QuitAll());
    for (const std::wstring& name : m_installed) {
        while (CountProcesses(name.c_str()) != 0)
            Sleep(1);
    }
}

INT PrintingMachine::Send(INT event, void* out) {
    INT result = -1;
    EXPECT_EQ(S_OK, m_object->DocumentEvent(nullptr, nullptr, event, 0, nullptr, 0, out, &result));
    return result;
}

INT PrintingMachine::StartDocument() {
    return Send(DOCUMENTEVENT_STARTDOC);
}

DWORD PrintingMachine::PrintIn(const std::wstring& processName) {
    const std::wstring program = m_folder.Take(L"printingapp.exe", processName);
    m_folder.Take(L"KZPWriterUI.dll");
    std::wstring command = L"\"" + program + L"\" \"" + m_registry.Path() + L"\"";
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION started = {};
    EXPECT_TRUE(CreateProcessW(program.c_str(), command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                               &startup, &started));
    const UniqueKernelHandle process(started.hProcess), thread(started.hThread);
    EXPECT_EQ(WAIT_OBJECT_0, WaitForSingleObject(process.Get(), 20000));
    DWORD status = ~0u;
    GetExitCodeProcess(process.Get(), &status);
    EXPECT_EQ(0u, status);
    return started.dwProcessId;
}

std::string PrintingMachine::Running() const {
    return std::to_string(CountProcesses(kInteraction)) + " " + std::to_string(CountProcesses(kLauncher));
}

}  // namespace kzp::test

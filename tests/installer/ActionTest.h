// The stage on which an action runs in this process: a registry and a spooler of its own, a service manager
// that plays the spooler's service, an installer session, and message boxes that answer themselves. What is
// asked of the service, waited for, stored, logged and shown stands in the spooler's log among its own calls,
// in one order.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <list>
#include <string>
#include <utility>
#include <vector>

#include "tests/installer/MachineState.h"
#include "tests/support/Files.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/InstallerSession.h"
#include "tests/support/SystemFolder.h"
#include "tools/driverhost/PlugIn.h"
#include "tools/standins/spooler/SpoolerControl.h"

namespace kzp::test {

using standins::spooler::Note;

// How the service manager answers in the next action.
struct ServiceFake {
    bool missing = false;

    // What the looks at the service bring, one after the other: a state when positive, else the negative of
    // an error code. The last one repeats.
    std::vector<int> looks = {SERVICE_RUNNING};
};
inline ServiceFake g_service;

// Never handed to the platform.
inline const auto kManager = reinterpret_cast<SC_HANDLE>(0x4D61);
inline const auto kService = reinterpret_cast<SC_HANDLE>(0x5365);

inline std::wstring Opening(const std::wstring& what, DWORD access = SC_MANAGER_ALL_ACCESS) {
    return L"open " + what + (access == SC_MANAGER_ALL_ACCESS ? L" for everything" : L" for less");
}

inline SC_HANDLE WINAPI OpenManager(LPCWSTR, LPCWSTR, DWORD access) {
    Note(Opening(L"manager", access));
    return kManager;
}

inline SC_HANDLE WINAPI OpenByName(SC_HANDLE, LPCWSTR name, DWORD access) {
    Note(Opening(name, access));
    return g_service.missing ? nullptr : kService;
}

inline BOOL WINAPI Control(SC_HANDLE service, DWORD control, LPSERVICE_STATUS) {
    Note(service == kService && control == SERVICE_CONTROL_STOP ? L"stop" : L"control");
    return FALSE;  // nobody is to mind
}

inline BOOL WINAPI Start(SC_HANDLE service, DWORD, LPCWSTR*) {
    Note(service == kService ? L"start" : L"start another");
    return FALSE;  // nor here
}

inline BOOL WINAPI Query(SC_HANDLE, SC_STATUS_TYPE, LPBYTE buffer, DWORD bytes, LPDWORD needed) {
    *needed = sizeof(SERVICE_STATUS_PROCESS);
    if (bytes < *needed)
        return FALSE;
    Note(L"look");
    auto& looks = g_service.looks;
    const int look = looks.front();
    if (looks.size() > 1)
        looks.erase(looks.begin());
    reinterpret_cast<SERVICE_STATUS_PROCESS*>(buffer)->dwCurrentState = static_cast<DWORD>(look);
    SetLastError(static_cast<DWORD>(-look));
    return look > 0;
}

inline BOOL WINAPI Close(SC_HANDLE handle) {
    Note(handle == kManager ? L"close manager" : L"close service");
    return TRUE;
}

inline int WINAPI Show(HWND owner, LPCWSTR text, LPCWSTR caption, UINT style) {
    EXPECT_EQ(nullptr, owner);
    EXPECT_EQ(static_cast<UINT>(MB_OK), style) << "and no icon";
    Note(L"show " + std::wstring(caption) + L": " + text);
    return IDOK;
}

inline LSTATUS WINAPI Store(HKEY key, LPCWSTR name, DWORD reserved, DWORD type, const BYTE* data,
                            DWORD bytes) {
    Note(L"store " + std::wstring(name));
    return RegSetValueExW(key, name, reserved, type, data, bytes);
}

inline void WINAPI Wait(DWORD milliseconds) {
    Note(L"wait " + std::to_wstring(milliseconds));
}

inline const std::pair<const char*, void*> kFakes[] = {{"OpenSCManagerW", AddressOf(OpenManager)},
                                                       {"OpenServiceW", AddressOf(OpenByName)},
                                                       {"ControlService", AddressOf(Control)},
                                                       {"StartServiceW", AddressOf(Start)},
                                                       {"QueryServiceStatusEx", AddressOf(Query)},
                                                       {"CloseServiceHandle", AddressOf(Close)},
                                                       {"Sleep", AddressOf(Wait)},
                                                       {"MessageBoxW", AddressOf(Show)},
                                                       {"RegSetValueExW", AddressOf(Store)}};

struct ActionTest : testing::Test {
    ActionTest() {
        EXPECT_TRUE(standins::spooler::IsInPlace());
        for (const auto& [function, fake] : kFakes)
            m_patches.emplace_back(m_plugIn.Module(), function, fake);
        g_service = {};
        m_session.SetActionData(m_inf + L";C:\\Other");
        standins::spooler::StartLog();
    }

    // The exported action's answer.
    UINT Run(const char* action) const {
        return m_plugIn.Export<UINT(WINAPI*)(MSIHANDLE)>(action)(m_session.Handle());
    }

    // All that happened since it was last asked.
    static Lines Log() {
        Lines log = standins::spooler::ReadLog();
        standins::spooler::StartLog();
        return log;
    }

    const std::wstring m_inf = BesideExe(L"installer.md");  // any file will do
    ScratchRegistry m_registry;
    InstallerSession m_session;
    driverhost::PlugIn m_plugIn;
    SystemFolder m_system{m_plugIn.Module(), SystemFolder::StandIns()};
    std::list<ImportPatch> m_patches;
};

}  // namespace kzp::test

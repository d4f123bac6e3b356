#include "tests/installer/ActionTest.h"

namespace kzp::test {

namespace {

SpoolerServiceFake* g_services = nullptr;

// Never handed to the platform.
const auto kManager = reinterpret_cast<SC_HANDLE>(0x4D61);
const auto kService = reinterpret_cast<SC_HANDLE>(0x5365);

std::wstring Access(DWORD access) {
    return access == 0xF003F ? L"everything" : std::to_wstring(access);
}

SC_HANDLE WINAPI OpenManager(LPCWSTR machine, LPCWSTR database, DWORD access) {
    EXPECT_EQ(nullptr, machine);
    EXPECT_EQ(nullptr, database);
    g_services->events.push_back(L"open manager for " + Access(access));
    SetLastError(ERROR_ACCESS_DENIED);
    return g_services->managerMissing ? nullptr : kManager;
}

SC_HANDLE WINAPI OpenByName(SC_HANDLE manager, LPCWSTR name, DWORD access) {
    EXPECT_EQ(kManager, manager);
    g_services->events.push_back(L"open " + std::wstring(name) + L" for " + Access(access));
    SetLastError(ERROR_SERVICE_DOES_NOT_EXIST);
    return g_services->serviceMissing ? nullptr : kService;
}

BOOL WINAPI Control(SC_HANDLE service, DWORD control, LPSERVICE_STATUS) {
    EXPECT_EQ(kService, service);
    EXPECT_EQ(static_cast<DWORD>(SERVICE_CONTROL_STOP), control);
    g_services->events.push_back(L"stop");
    SetLastError(ERROR_SERVICE_NOT_ACTIVE);
    return FALSE;  // nobody is to mind
}

BOOL WINAPI Start(SC_HANDLE service, DWORD count, LPCWSTR*) {
    EXPECT_EQ(kService, service);
    EXPECT_EQ(0u, count);
    g_services->events.push_back(L"start");
    if (g_services->atStart)
        g_services->atStart();
    SetLastError(ERROR_SERVICE_ALREADY_RUNNING);
    return FALSE;  // nor here
}

BOOL WINAPI Query(SC_HANDLE service, SC_STATUS_TYPE type, LPBYTE buffer, DWORD bytes, LPDWORD needed) {
    EXPECT_EQ(kService, service);
    EXPECT_EQ(SC_STATUS_PROCESS_INFO, type);
    *needed = sizeof(SERVICE_STATUS_PROCESS);
    if (bytes < *needed) {
        EXPECT_EQ(nullptr, buffer);
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return FALSE;
    }
    g_services->events.push_back(L"look");
    auto& looks = g_services->looks;
    const int look = looks.front();
    if (looks.size() > 1)
        looks.erase(looks.begin());
    if (look <= 0) {
        SetLastError(static_cast<DWORD>(-look));
        return FALSE;
    }
    auto& status = *reinterpret_cast<SERVICE_STATUS_PROCESS*>(buffer);
    status = {};
    status.dwCurrentState = static_cast<DWORD>(look);
    return TRUE;
}

BOOL WINAPI Close(SC_HANDLE handle) {
    g_services->events.push_back(handle == kManager ? L"close manager" : L"close service");
    return TRUE;
}

void WINAPI Wait(DWORD milliseconds) {
    g_services->events.push_back(L"wait " + std::to_wstring(milliseconds));
}

}  // namespace

SpoolerServiceFake::SpoolerServiceFake(HMODULE module) {
    g_services = this;
    const auto patch = [this, module](const char* name, void* replacement) {
        m_patches.push_back(std::make_unique<ImportPatch>(module, name, replacement));
    };
    patch("OpenSCManagerW", AddressOf(OpenManager));
    patch("OpenServiceW", AddressOf(OpenByName));
    patch("ControlService", AddressOf(Control));
    patch("StartServiceW", AddressOf(Start));
    patch("QueryServiceStatusEx", AddressOf(Query));
    patch("CloseServiceHandle", AddressOf(Close));
    patch("Sleep", AddressOf(Wait));
}

SpoolerServiceFake::~SpoolerServiceFake() {
    m_patches.clear();
    g_services = nullptr;
}

ActionTest::ActionTest() : m_services(m_plugIn.Module()) {
    EXPECT_TRUE(standins::spooler::IsInPlace());
}

ActionTest::~ActionTest() {
    standins::spooler::ClearFailures();
}

UINT ActionTest::Run(const char* action) const {
    return m_plugIn.Export<UINT(WINAPI*)(MSIHANDLE)>(action)(m_session.Handle());
}

std::wstring ActionTest::Text(UINT id) {
    const HMODULE module =
        LoadLibraryExW(BesideExe(L"KZPWriterRes.dll").c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    wchar_t text[260] = {};
    EXPECT_LT(0, LoadStringW(module, id, text, 260)) << id;
    FreeLibrary(module);
    return text;
}

}  // namespace kzp::test

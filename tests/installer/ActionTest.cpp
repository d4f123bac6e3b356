#include "tests/installer/ActionTest.h"

#include "resources/resource.h"

namespace kzp::test {

namespace {

PlatformFake* g_platform = nullptr;

// Never handed to the platform.
const auto kManager = reinterpret_cast<SC_HANDLE>(0x4D61);
const auto kService = reinterpret_cast<SC_HANDLE>(0x5365);

void Record(const std::wstring& event) {
    g_platform->events.push_back(event);
    standins::spooler::Note(event);
}

std::wstring Access(DWORD access) {
    return access == 0xF003F ? L"everything" : std::to_wstring(access);
}

SC_HANDLE WINAPI OpenManager(LPCWSTR machine, LPCWSTR database, DWORD access) {
    EXPECT_EQ(nullptr, machine);
    EXPECT_EQ(nullptr, database);
    Record(L"open manager for " + Access(access));
    SetLastError(ERROR_ACCESS_DENIED);
    return g_platform->managerMissing ? nullptr : kManager;
}

SC_HANDLE WINAPI OpenByName(SC_HANDLE manager, LPCWSTR name, DWORD access) {
    EXPECT_EQ(kManager, manager);
    Record(L"open " + std::wstring(name) + L" for " + Access(access));
    SetLastError(ERROR_SERVICE_DOES_NOT_EXIST);
    return g_platform->serviceMissing ? nullptr : kService;
}

BOOL WINAPI Control(SC_HANDLE service, DWORD control, LPSERVICE_STATUS) {
    EXPECT_EQ(kService, service);
    EXPECT_EQ(static_cast<DWORD>(SERVICE_CONTROL_STOP), control);
    Record(L"stop");
    SetLastError(ERROR_SERVICE_NOT_ACTIVE);
    return FALSE;  // nobody is to mind
}

BOOL WINAPI Start(SC_HANDLE service, DWORD count, LPCWSTR*) {
    EXPECT_EQ(kService, service);
    EXPECT_EQ(0u, count);
    Record(L"start");
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
    Record(L"look");
    auto& looks = g_platform->looks;
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
    Record(handle == kManager ? L"close manager" : L"close service");
    return TRUE;
}

int WINAPI Show(HWND owner, LPCWSTR text, LPCWSTR caption, UINT style) {
    EXPECT_EQ(nullptr, owner);
    EXPECT_EQ(static_cast<UINT>(MB_OK), style) << "and no icon";
    g_platform->boxes.push_back((caption ? caption : L"(none)") + std::wstring(L": ") + text);
    standins::spooler::Note(L"show " + g_platform->boxes.back());
    return IDOK;
}

LSTATUS WINAPI Store(HKEY key, LPCWSTR name, DWORD reserved, DWORD type, const BYTE* data, DWORD bytes) {
    const std::wstring number =
        type == REG_DWORD ? L" " + std::to_wstring(*reinterpret_cast<const DWORD*>(data)) : L"";
    standins::spooler::Note(L"store " + std::wstring(name) + number);
    return RegSetValueExW(key, name, reserved, type, data, bytes);
}

BOOL WINAPI CloseQueue(HANDLE printer) {
    standins::spooler::Note(L"close printer");
    return ClosePrinter(printer);
}

void WINAPI Wait(DWORD milliseconds) {
    Record(L"wait " + std::to_wstring(milliseconds));
}

}  // namespace

PlatformFake::PlatformFake(HMODULE module) {
    g_platform = this;
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
    patch("MessageBoxW", AddressOf(Show));
    patch("RegSetValueExW", AddressOf(Store));
    patch("ClosePrinter", AddressOf(CloseQueue));
}

PlatformFake::~PlatformFake() {
    m_patches.clear();
    g_platform = nullptr;
}

ActionTest::ActionTest() : m_platform(m_plugIn.Module()) {
    EXPECT_TRUE(standins::spooler::IsInPlace());
}

ActionTest::~ActionTest() {
    standins::spooler::ClearFailures();
}

UINT ActionTest::Run(const char* action) const {
    return m_plugIn.Export<UINT(WINAPI*)(MSIHANDLE)>(action)(m_session.Handle());
}

std::wstring ActionTest::Box(UINT textId) {
    const HMODULE module =
        LoadLibraryExW(BesideExe(L"KZPWriterRes.dll").c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    wchar_t caption[260] = {}, text[260] = {};
    EXPECT_LT(0, LoadStringW(module, IDS_INSTALL_ERROR_CAPTION, caption, 260));
    EXPECT_LT(0, LoadStringW(module, textId, text, 260)) << textId;
    FreeLibrary(module);
    return std::wstring(caption) + L": " + text;
}

}  // namespace kzp::test

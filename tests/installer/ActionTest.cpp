#include "tests/installer/ActionTest.h"

#include "resources/resource.h"

namespace kzp::test {

namespace {

using namespace standins;

// Never handed to the platform.
const auto kManager = reinterpret_cast<SC_HANDLE>(0x4D61);
const auto kService = reinterpret_cast<SC_HANDLE>(0x5365);

void NoteOpening(const std::wstring& what, DWORD access) {
    spooler::Note(L"open " + what + (access == SC_MANAGER_ALL_ACCESS ? L" for everything" : L" for less"));
}

SC_HANDLE WINAPI OpenManager(LPCWSTR, LPCWSTR, DWORD access) {
    NoteOpening(L"manager", access);
    return g_service.managerMissing ? nullptr : kManager;
}

SC_HANDLE WINAPI OpenByName(SC_HANDLE, LPCWSTR name, DWORD access) {
    NoteOpening(name, access);
    return g_service.serviceMissing ? nullptr : kService;
}

BOOL WINAPI Control(SC_HANDLE service, DWORD control, LPSERVICE_STATUS) {
    spooler::Note(service == kService && control == SERVICE_CONTROL_STOP ? L"stop" : L"control");
    return FALSE;  // nobody is to mind
}

BOOL WINAPI Start(SC_HANDLE service, DWORD, LPCWSTR*) {
    spooler::Note(service == kService ? L"start" : L"start another");
    return FALSE;  // nor here
}

BOOL WINAPI Query(SC_HANDLE, SC_STATUS_TYPE, LPBYTE buffer, DWORD bytes, LPDWORD needed) {
    *needed = sizeof(SERVICE_STATUS_PROCESS);
    if (bytes < *needed) {
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return FALSE;
    }
    spooler::Note(L"look");
    auto& looks = g_service.looks;
    const int look = looks.front();
    if (looks.size() > 1)
        looks.erase(looks.begin());
    reinterpret_cast<SERVICE_STATUS_PROCESS*>(buffer)->dwCurrentState = static_cast<DWORD>(look);
    SetLastError(static_cast<DWORD>(-look));
    return look > 0;
}

BOOL WINAPI Close(SC_HANDLE handle) {
    spooler::Note(handle == kManager ? L"close manager" : L"close service");
    return TRUE;
}

int WINAPI Show(HWND owner, LPCWSTR text, LPCWSTR caption, UINT style) {
    EXPECT_EQ(nullptr, owner);
    EXPECT_EQ(static_cast<UINT>(MB_OK), style) << "and no icon";
    spooler::Note(L"show " + std::wstring(caption) + L": " + text);
    return IDOK;
}

LSTATUS WINAPI Store(HKEY key, LPCWSTR name, DWORD reserved, DWORD type, const BYTE* data, DWORD bytes) {
    const std::wstring number =
        type == REG_DWORD ? L" " + std::to_wstring(*reinterpret_cast<const DWORD*>(data)) : L"";
    spooler::Note(L"store " + std::wstring(name) + number);
    return RegSetValueExW(key, name, reserved, type, data, bytes);
}

BOOL WINAPI CloseQueue(HANDLE printer) {
    spooler::Note(L"close printer");
    return ClosePrinter(printer);
}

void WINAPI Wait(DWORD milliseconds) {
    spooler::Note(L"wait " + std::to_wstring(milliseconds));
}

}  // namespace

ActionTest::ActionTest() {
    EXPECT_TRUE(spooler::IsInPlace());
    for (const auto& [name, replacement] :
         std::initializer_list<std::pair<const char*, void*>>{{"OpenSCManagerW", AddressOf(OpenManager)},
                                                              {"OpenServiceW", AddressOf(OpenByName)},
                                                              {"ControlService", AddressOf(Control)},
                                                              {"StartServiceW", AddressOf(Start)},
                                                              {"QueryServiceStatusEx", AddressOf(Query)},
                                                              {"CloseServiceHandle", AddressOf(Close)},
                                                              {"Sleep", AddressOf(Wait)},
                                                              {"MessageBoxW", AddressOf(Show)},
                                                              {"RegSetValueExW", AddressOf(Store)},
                                                              {"ClosePrinter", AddressOf(CloseQueue)}})
        m_patches.emplace_back(m_plugIn.Module(), name, replacement);
    g_service = {};
    spooler::StartLog();
}

ActionTest::~ActionTest() {
    spooler::ClearFailures();
}

UINT ActionTest::Run(const char* action) const {
    return m_plugIn.Export<UINT(WINAPI*)(MSIHANDLE)>(action)(m_session.Handle());
}

Lines ActionTest::Log() {
    Lines log = spooler::ReadLog();
    spooler::StartLog();
    return log;
}

Lines ActionTest::Told() {
    Lines told = Log();
    std::erase_if(told, [](const std::wstring& line) {
        return !line.starts_with(L"log ") && !line.starts_with(L"show ");
    });
    return told;
}

std::wstring ActionTest::Box(UINT textId) {
    const HMODULE module =
        LoadLibraryExW(BesideExe(L"KZPWriterRes.dll").c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    wchar_t caption[260] = {}, text[260] = {};
    EXPECT_LT(0, LoadStringW(module, IDS_INSTALL_ERROR_CAPTION, caption, 260));
    EXPECT_LT(0, LoadStringW(module, textId, text, 260)) << textId;
    FreeLibrary(module);
    return L"show " + std::wstring(caption) + L": " + text;
}

}  // namespace kzp::test

// The start of a document runs on the print path of every application. Beside it stand the platform calls
// that it has to make, in the same order and with nothing around them.
#include <windows.h>

#include <psapi.h>
#include <shellapi.h>
#include <tlhelp32.h>

#include <stdexcept>
#include <string>

#include "driverkit/printoem.h"
#include "tests/support/Files.h"
#include "tests/support/PlugInDll.h"
#include "tests/support/ScratchRegistry.h"
#include "tools/bench/Chapters.h"
#include "tools/standins/companions/Companions.h"

namespace kzp::bench {

namespace {

using test::kProductKey;
using test::kQueueKey;
using test::kSettingsKey;

constexpr double kStartLimit = 1.15;
constexpr size_t kRounds = 250;
constexpr size_t kLaunchingRounds = 30;
constexpr int kIgnoredEvents = 100'000;
constexpr double kIgnoredEventLimit = 0.5;  // microseconds: no system call is that quick

constexpr wchar_t kViewerKey[] = L"SOFTWARE\\Wow6432Node\\Brimlake\\Plansight\\ProductInfo";
constexpr wchar_t kInteraction[] = L"KzpWriterInteraction.exe";
constexpr wchar_t kLauncher[] = L"KZPAppLauncher.exe";
constexpr wchar_t kViewer[] = L"PlansightApp.exe";

// What a start of a document comes across. A process id of 0 means that the companion is not running; an
// empty path, that it is not installed.
struct Scene {
    DWORD interactionPid = 0, launcherPid = 0;
    std::wstring interaction, launcher, viewer;
};

// --- the bare calls

void BareWrite(const wchar_t* name, DWORD value) {
    HKEY key = nullptr;
    RegCreateKeyExW(HKEY_CURRENT_USER, kSettingsKey, 0, nullptr, 0, KEY_READ | KEY_WRITE, nullptr, &key,
                    nullptr);
    RegSetValueExW(key, name, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&value), sizeof value);
    RegCloseKey(key);
}

void BareRead(const wchar_t* path, const wchar_t* name) {
    BYTE value[520];
    DWORD bytes = sizeof value;
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, path, 0, KEY_READ, &key) != ERROR_SUCCESS)
        return;
    RegQueryValueExW(key, name, nullptr, nullptr, value, &bytes);
    RegCloseKey(key);
}

void BareBaseName(DWORD pid) {
    DWORD pids[1024], bytes = 0;
    EnumProcesses(pids, sizeof pids, &bytes);
    const HANDLE process = OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, pid);
    HMODULE module = nullptr;
    EnumProcessModules(process, &module, sizeof(HMODULE), &bytes);
    wchar_t name[MAX_PATH];
    GetModuleBaseNameW(process, module, name, MAX_PATH);
    CloseHandle(process);
}

// Walks up to the process that is looked for, or to the end.
void BareSearch(DWORD pid) {
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    PROCESSENTRY32W entry = {};
    entry.dwSize = sizeof entry;
    for (BOOL more = Process32FirstW(snapshot, &entry); more && entry.th32ProcessID != pid;)
        more = Process32NextW(snapshot, &entry);
    CloseHandle(snapshot);
}

void BareLaunch(DWORD running, const std::wstring& program) {
    BareSearch(running != 0 ? running : ~0u);
    if (running != 0)
        return;
    BareRead(kProductKey, L"HelpFilePath");
    if (program.empty())
        return;
    SHELLEXECUTEINFOW start = {};
    start.cbSize = sizeof start;
    start.fMask = SEE_MASK_NOCLOSEPROCESS;
    start.lpVerb = L"open";
    start.lpFile = program.c_str();
    start.nShow = SW_SHOWNOACTIVATE;
    ShellExecuteExW(&start);
    CloseHandle(start.hProcess);
}

void BareStartOfDocument(const Scene& scene) {
    const DWORD pid = GetCurrentProcessId();
    DWORD session = 0;
    ProcessIdToSessionId(pid, &session);
    BareWrite(L"SessionId", session);
    BareBaseName(pid);
    BareWrite(L"ID", pid);

    OSVERSIONINFOW version = {};
    version.dwOSVersionInfoSize = sizeof version;
    GetVersionExW(&version);
    BareRead(kQueueKey, L"Attributes");

    BareLaunch(scene.interactionPid, scene.interaction);

    BYTE choice[2048];
    DWORD bytes = sizeof choice;
    HKEY key = nullptr;
    RegCreateKeyExW(HKEY_CURRENT_USER, kSettingsKey, 0, nullptr, 0, KEY_READ | KEY_WRITE, nullptr, &key,
                    nullptr);
    RegQueryValueExW(key, L"LaunchKZPView", nullptr, nullptr, choice, &bytes);
    RegCloseKey(key);
    BareRead(kViewerKey, L"Location");
    if (scene.viewer.empty())
        return;
    WIN32_FIND_DATAW found;
    FindClose(FindFirstFileW(scene.viewer.c_str(), &found));
    BareLaunch(scene.launcherPid, scene.launcher);
}

// --- what happens on a machine where documents are started

DWORD FindProcess(const wchar_t* name) {
    const UniqueFile snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    PROCESSENTRY32W entry = {};
    entry.dwSize = sizeof entry;
    BOOL more = Process32FirstW(snapshot.Get(), &entry);
    while (more && _wcsicmp(entry.szExeFile, name) != 0)
        more = Process32NextW(snapshot.Get(), &entry);
    return more ? entry.th32ProcessID : 0;
}

// Both companions are there now, and gone afterwards.
void EndCompanions() {
    if (!standins::WaitReady(kInteraction) || !standins::WaitReady(kLauncher) || !standins::QuitAll())
        throw std::runtime_error("a start of a document did not start both companions");
    while (FindProcess(kInteraction) != 0 || FindProcess(kLauncher) != 0)
        Sleep(1);
}

std::wstring Place(const test::TemporaryFolder& folder, const wchar_t* name) {
    return standins::PlaceCompanion(folder.Path(), name, standins::kDoesNothing);
}

}  // namespace

void MeasureDocumentEvents(Report& report) {
    report.Explain(
        "A start of a document beside the platform calls that it has to make, in turn in one run; ratio is "
        "the median of the rounds' own ratios. Launched: both companions are started and ended every time. "
        "An ignored event calls nothing.");
    const test::ScratchRegistry registry;
    const test::TemporaryFolder folder;
    const test::PlugInDll dll;
    IPrintOemUI2* const object = dll.Create();
    if (!object)
        throw std::runtime_error("the plug-in serves no object");
    const auto send = [&](INT event) {
        INT result = 0;
        object->DocumentEvent(nullptr, nullptr, event, 0, nullptr, 0, nullptr, &result);
    };
    Scene scene;
    const auto measure = [&](const char* what, size_t rounds, auto&& between) {
        report.Add(what,
                   Compare(
                       rounds, kStartLimit, [&] { send(DOCUMENTEVENT_STARTDOC); },
                       [&] { BareStartOfDocument(scene); }, between),
                   kStartLimit);
    };
    const auto nothing = [] {};

    test::WriteDword(HKEY_LOCAL_MACHINE, kQueueKey, L"Attributes", PRINTER_ATTRIBUTE_LOCAL);
    test::WriteText(HKEY_CURRENT_USER, kSettingsKey, L"LaunchKZPView", L"YES");
    measure("start of a document, companions absent", kRounds, nothing);

    test::WriteText(HKEY_LOCAL_MACHINE, kProductKey, L"HelpFilePath", folder.File(L"KZPWriter.chm"));
    test::WriteText(HKEY_LOCAL_MACHINE, kViewerKey, L"Location", folder.Path() + L"\\");
    scene.interaction = Place(folder, kInteraction);
    scene.launcher = Place(folder, kLauncher);
    scene.viewer = Place(folder, kViewer);
    measure("start of a document, companions launched", kLaunchingRounds, EndCompanions);

    send(DOCUMENTEVENT_STARTDOC);
    scene.interactionPid = FindProcess(kInteraction);
    scene.launcherPid = FindProcess(kLauncher);
    measure("start of a document, companions running", kRounds, nothing);
    EndCompanions();

    const double ignored = Time([&] {
        for (int i = 0; i < kIgnoredEvents; ++i)
            send(DOCUMENTEVENT_ENDDOCPOST);
    });
    report.Add("an ignored event", ignored / kIgnoredEvents, "us", kIgnoredEventLimit);
    object->Release();
}

}  // namespace kzp::bench

// What runs in every program that prints: DevMode, several times for every device context, and the start of a
// document. Beside each stand the platform calls that it has to make, in the same order and with nothing
// around them.
#include <windows.h>

#include <psapi.h>
#include <shellapi.h>
#include <tlhelp32.h>

#include "core/SignalMapping.h"
#include "support/RegistryKey.h"
#include "support/WindowsVersion.h"
#include "tools/bench/Bench.h"
#include "tools/standins/companions/Companions.h"

namespace kzp::bench {

namespace {

using standins::kProductKey;
using standins::kQueueKey;
using standins::kSettingsKey;

constexpr double kLimit = 1.15;
constexpr double kIgnoredEventLimit = 0.5;  // microseconds: no system call is that quick
constexpr int kIgnoredEvents = 100'000;

constexpr wchar_t kViewerKey[] = L"SOFTWARE\\Wow6432Node\\Brimlake\\Plansight\\ProductInfo";
constexpr wchar_t kInteraction[] = L"KzpWriterInteraction.exe";
constexpr wchar_t kLauncher[] = L"KZPAppLauncher.exe";

// What a start of a document comes across; an empty path means that the program is not installed.
struct Scene {
    std::wstring interaction, launcher, viewer;
};

void BareRead(const wchar_t* path, const wchar_t* name) {
    BYTE value[520];
    DWORD bytes = sizeof value;
    RegistryKey::Open(HKEY_LOCAL_MACHINE, path, KEY_READ).Query(name, value, &bytes);
}

RegistryKey BareSettings() {
    return RegistryKey::Create(HKEY_CURRENT_USER, kSettingsKey, KEY_READ | KEY_WRITE);
}

// Whether the newer form of the gate applies.
void BareQueueTest() {
    (void)WindowsVersion();
    BareRead(kQueueKey, L"Attributes");
}

// Up to the process of that name, or to the end without one.
DWORD BareSearch(const wchar_t* name) {
    const UniqueFile snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    PROCESSENTRY32W entry = {};
    entry.dwSize = sizeof entry;
    BOOL more = Process32FirstW(snapshot.Get(), &entry);
    while (more && _wcsicmp(entry.szExeFile, name) != 0)
        more = Process32NextW(snapshot.Get(), &entry);
    return more ? entry.th32ProcessID : 0;
}

void BareProcessGate() {
    BareQueueTest();
    const DWORD wanted = BareSearch(kInteraction);
    if (wanted == 0)
        return;
    EnumWindows(
        [](HWND window, LPARAM companion) -> BOOL {
            DWORD owner = 0;
            if (!(GetWindowLongPtrW(window, GWL_STYLE) & WS_VISIBLE))
                return TRUE;
            GetWindowThreadProcessId(window, &owner);
            return owner != static_cast<DWORD>(companion);
        },
        static_cast<LPARAM>(wanted));
}

void BareMappingGate() {
    BareQueueTest();
    const UniqueKernelHandle mapping(OpenFileMappingW(FILE_MAP_ALL_ACCESS, FALSE, kSignalMappingName));
    if (mapping)
        UnmapViewOfFile(MapViewOfFile(mapping.Get(), FILE_MAP_ALL_ACCESS, 0, 0, kSignalMappingBytes));
}

void BareBaseName(DWORD pid) {
    DWORD pids[1024], bytes = 0;
    EnumProcesses(pids, sizeof pids, &bytes);
    const UniqueKernelHandle process(OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, pid));
    HMODULE module = nullptr;
    EnumProcessModules(process.Get(), &module, sizeof(HMODULE), &bytes);
    wchar_t name[MAX_PATH];
    GetModuleBaseNameW(process.Get(), module, name, MAX_PATH);
}

void BareLaunch(const wchar_t* name, const std::wstring& program) {
    if (BareSearch(name) != 0)
        return;
    BareRead(kProductKey, L"HelpFilePath");
    if (program.empty())
        return;
    SHELLEXECUTEINFOW start = {.cbSize = sizeof start,
                               .fMask = SEE_MASK_NOCLOSEPROCESS,
                               .lpVerb = L"open",
                               .lpFile = program.c_str(),
                               .nShow = SW_SHOWNOACTIVATE};
    ShellExecuteExW(&start);
    CloseHandle(start.hProcess);
}

void BareStartOfDocument(const Scene& scene) {
    const DWORD pid = GetCurrentProcessId();
    DWORD session = 0;
    ProcessIdToSessionId(pid, &session);
    BareSettings().SetDword(L"SessionId", session);
    BareBaseName(pid);
    BareSettings().SetDword(L"ID", pid);
    BareQueueTest();
    BareLaunch(kInteraction, scene.interaction);

    BYTE choice[2048];
    DWORD bytes = sizeof choice;
    BareSettings().Query(L"LaunchKZPView", choice, &bytes);
    BareRead(kViewerKey, L"Location");
    if (scene.viewer.empty())
        return;
    WIN32_FIND_DATAW found;
    FindClose(FindFirstFileW(scene.viewer.c_str(), &found));
    BareLaunch(kLauncher, scene.launcher);
}

// Both companions are there now, and gone afterwards.
void EndCompanions() {
    Require(standins::WaitReady(kInteraction) && standins::WaitReady(kLauncher) && standins::QuitAll(),
            "a start of a document did not start both companions");
    while (BareSearch(kInteraction) != 0 || BareSearch(kLauncher) != 0)
        Sleep(1);
}

// The plug-in's object in a registry of its own, with a queue of these attributes.
struct PrintingProgram {
    const standins::ScratchRegistry registry;
    const test::TemporaryFolder folder;
    const driverhost::PlugIn dll;
    const driverhost::ComRef<IPrintOemUI2> object = dll.CreateObject();

    PrintingProgram() { SetQueue(PRINTER_ATTRIBUTE_LOCAL); }
    static void SetQueue(DWORD attributes) {
        standins::WriteDword(HKEY_LOCAL_MACHINE, kQueueKey, L"Attributes", attributes);
    }
    std::wstring Place(const wchar_t* name, const wchar_t* manner) const {
        return standins::PlaceCompanion(folder.Path(), name, manner);
    }
};

}  // namespace

void MeasureDevMode() {
    BeginChapter("DevMode",
                 "DevMode (the record's size) beside the platform calls of its gate: the process and window "
                 "search of a spooled queue, and the named mapping of a direct one.",
                 "plug-in", "bare calls");
    const PrintingProgram program;
    const auto ask = [&] {
        OEMDMPARAM parameter = {};
        parameter.cbSize = sizeof parameter;
        program.object->DevMode(OEMDM_SIZE, &parameter);
    };
    const auto measure = [&](const char* what, void (*bare)()) { Compare(what, 400, kLimit, ask, bare); };
    measure("spooled queue, companion absent", BareProcessGate);
    {
        const auto companion = standins::StartCompanion(program.Place(kInteraction, standins::kShowsWindow));
        Require(companion && standins::WaitReady(kInteraction), "the companion does not start");
        measure("spooled queue, companion on the screen", BareProcessGate);
        standins::QuitAll();
    }
    PrintingProgram::SetQueue(PRINTER_ATTRIBUTE_LOCAL | PRINTER_ATTRIBUTE_DIRECT);
    measure("direct queue, mapping absent", BareMappingGate);
    const UniqueKernelHandle mapping(CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
                                                        static_cast<DWORD>(kSignalMappingBytes),
                                                        kSignalMappingName));
    measure("direct queue, mapping present", BareMappingGate);
}

void MeasureDocumentEvents() {
    BeginChapter("Document events",
                 "A start of a document beside the platform calls that it has to make, in turn in one run; "
                 "ratio is the median of the rounds' own ratios. Launched: both companions are started and "
                 "ended every time. An "
                 "ignored event calls nothing.",
                 "plug-in", "bare calls");
    const PrintingProgram program;
    const auto send = [&](INT event) {
        INT result = 0;
        program.object->DocumentEvent(nullptr, nullptr, event, 0, nullptr, 0, nullptr, &result);
    };
    const auto start = [&] { send(DOCUMENTEVENT_STARTDOC); };
    Scene scene;
    const auto bare = [&] { BareStartOfDocument(scene); };
    standins::WriteText(HKEY_CURRENT_USER, kSettingsKey, L"LaunchKZPView", L"YES");
    Compare("start of a document, companions absent", 250, kLimit, start, bare);

    standins::WriteText(HKEY_LOCAL_MACHINE, kProductKey, L"HelpFilePath",
                        program.folder.File(L"KZPWriter.chm"));
    standins::WriteText(HKEY_LOCAL_MACHINE, kViewerKey, L"Location", program.folder.Path() + L"\\");
    scene.interaction = program.Place(kInteraction, standins::kDoesNothing);
    scene.launcher = program.Place(kLauncher, standins::kDoesNothing);
    scene.viewer = program.Place(L"PlansightApp.exe", standins::kDoesNothing);
    Compare("start of a document, companions launched", 30, kLimit, start, bare, EndCompanions);

    start();
    Compare("start of a document, companions running", 250, kLimit, start, bare);
    EndCompanions();

    const double ignored = Time([&] {
        for (int i = 0; i < kIgnoredEvents; ++i)
            send(DOCUMENTEVENT_ENDDOCPOST);
    });
    Report("an ignored event", ignored / kIgnoredEvents, kIgnoredEventLimit);
}

}  // namespace kzp::bench

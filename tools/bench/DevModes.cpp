// The driver calls DevMode several times for every device context. Each call passes the gate first; beside it
// stand the gate's own platform calls.
#include <windows.h>

#include <tlhelp32.h>

#include <stdexcept>
#include <string>

#include "core/SignalMapping.h"
#include "driverkit/printoem.h"
#include "support/UniqueHandle.h"
#include "tests/support/Files.h"
#include "tests/support/PlugInDll.h"
#include "tests/support/ScratchRegistry.h"
#include "tools/bench/Chapters.h"
#include "tools/standins/companions/Companions.h"

namespace kzp::bench {

namespace {

constexpr double kLimit = 1.15;
constexpr size_t kRounds = 400;
constexpr wchar_t kInteraction[] = L"KzpWriterInteraction.exe";

// The queue's attributes; whether the newer form of the gate applies.
void BareQueueTest() {
    OSVERSIONINFOW version = {};
    version.dwOSVersionInfoSize = sizeof version;
    GetVersionExW(&version);
    DWORD attributes = 0, bytes = sizeof attributes;
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, test::kQueueKey, 0, KEY_READ, &key) != ERROR_SUCCESS)
        return;
    RegQueryValueExW(key, L"Attributes", nullptr, nullptr, reinterpret_cast<BYTE*>(&attributes), &bytes);
    RegCloseKey(key);
}

// Up to the companion, or to the end without one.
DWORD BareSearch() {
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    PROCESSENTRY32W entry = {};
    entry.dwSize = sizeof entry;
    BOOL more = Process32FirstW(snapshot, &entry);
    while (more && _wcsicmp(entry.szExeFile, kInteraction) != 0)
        more = Process32NextW(snapshot, &entry);
    CloseHandle(snapshot);
    return more ? entry.th32ProcessID : 0;
}

void BareProcessGate() {
    BareQueueTest();
    const DWORD wanted = BareSearch();
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
    const HANDLE mapping = OpenFileMappingW(FILE_MAP_ALL_ACCESS, FALSE, kSignalMappingName);
    if (!mapping)
        return;
    UnmapViewOfFile(MapViewOfFile(mapping, FILE_MAP_ALL_ACCESS, 0, 0, kSignalMappingBytes));
    CloseHandle(mapping);
}

}  // namespace

void MeasureDevMode(Report& report) {
    report.Explain(
        "DevMode (the record's size) beside the platform calls of its gate: the process and window search of "
        "a "
        "spooled queue, and the named mapping of a direct one.");
    const test::ScratchRegistry registry;
    const test::PlugInDll dll;
    IPrintOemUI2* const object = dll.Create();
    if (!object)
        throw std::runtime_error("the plug-in serves no object");
    const auto measure = [&](const char* what, auto&& bare) {
        report.Add(what,
                   Compare(
                       kRounds, kLimit,
                       [&] {
                           OEMDMPARAM parameter = {};
                           parameter.cbSize = sizeof parameter;
                           object->DevMode(OEMDM_SIZE, &parameter);
                       },
                       bare, [] {}),
                   kLimit);
    };
    const auto setQueue = [](DWORD attributes) {
        test::WriteDword(HKEY_LOCAL_MACHINE, test::kQueueKey, L"Attributes", attributes);
    };

    setQueue(PRINTER_ATTRIBUTE_LOCAL);
    measure("spooled queue, companion absent", BareProcessGate);
    {
        const test::TemporaryFolder folder;
        const auto companion = standins::StartCompanion(
            standins::PlaceCompanion(folder.Path(), kInteraction, standins::kShowsWindow));
        if (!companion || !standins::WaitReady(kInteraction))
            throw std::runtime_error("the companion does not start");
        measure("spooled queue, companion on the screen", BareProcessGate);
        standins::QuitAll();
    }
    setQueue(PRINTER_ATTRIBUTE_LOCAL | PRINTER_ATTRIBUTE_DIRECT);
    measure("direct queue, mapping absent", BareMappingGate);
    {
        const UniqueKernelHandle mapping(CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
                                                            static_cast<DWORD>(kSignalMappingBytes),
                                                            kSignalMappingName));
        measure("direct queue, mapping present", BareMappingGate);
    }
    object->Release();
}

}  // namespace kzp::bench

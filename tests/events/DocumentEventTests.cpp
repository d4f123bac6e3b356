// What the plug-in does with the events of a document: seen from the driver, the registry and the process
// list, on a machine where companions really run.
#include <gtest/gtest.h>
#include <windows.h>

#include <shellapi.h>
#include <tlhelp32.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <iterator>
#include <list>
#include <string>
#include <utility>
#include <vector>

#include "driverkit/printoem.h"
#include "tests/support/Counters.h"
#include "tests/support/Files.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/MessageBoxes.h"
#include "tests/support/PlugInDll.h"
#include "tests/support/ScratchRegistry.h"
#include "tests/support/SystemFolder.h"
#include "tools/standins/companions/Companions.h"

namespace kzp::test {

namespace {

constexpr wchar_t kInteraction[] = L"KzpWriterInteraction.exe";
constexpr wchar_t kLauncher[] = L"KZPAppLauncher.exe";
constexpr wchar_t kViewer[] = L"PlansightApp.exe";
constexpr wchar_t kBare[] = L"bare-companion.exe";

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

struct DocumentEvents : testing::Test {
    DocumentEvents() {
        for (const wchar_t* const name : {kInteraction, kLauncher, kViewer, kBare})
            EXPECT_NE(L"", standins::PlaceCompanion(folder.Path(), name, standins::kDoesNothing));
        Reset();
    }
    ~DocumentEvents() override { EndCompanions(); }

    // A spooled queue, companions and viewer in the help file's folder, and a user who wants the viewer.
    void Reset() const {
        SetQueue(PRINTER_ATTRIBUTE_LOCAL);
        SetHelpPath(folder.File(L"KZPWriter.chm"));
        SetViewer(folder.File(L""));
        SetOption(L"YES");
    }
    static void SetQueue(DWORD attributes) {
        WriteDword(HKEY_LOCAL_MACHINE, kQueueKey, L"Attributes", attributes);
    }
    static void SetHelpPath(const std::wstring& path) {
        WriteText(HKEY_LOCAL_MACHINE, kProductKey, L"HelpFilePath", path);
    }
    static void SetViewer(const std::wstring& path) {
        WriteText(HKEY_LOCAL_MACHINE, kViewerKey, L"Location", path);
    }
    static void SetOption(const wchar_t* text) {
        WriteText(HKEY_CURRENT_USER, kSettingsKey, L"LaunchKZPView", text);
    }
    std::wstring FolderOf(size_t length) const {
        const std::wstring beginning = folder.File(L"");
        return beginning + std::wstring(length - beginning.size(), L'h');
    }

    // Answers the event's result.
    INT Send(INT event, void* out = nullptr) const {
        INT result = -1;
        EXPECT_EQ(S_OK, object->DocumentEvent(nullptr, nullptr, event, 0, nullptr, 0, out, &result));
        return result;
    }

    // Starts a document; answers how many of each run then, the interaction application first: "1 0".
    std::string Start() const {
        EXPECT_EQ(DOCUMENTEVENT_SUCCESS, Send(DOCUMENTEVENT_STARTDOC));
        return std::to_string(CountProcesses(kInteraction)) + " " + std::to_string(CountProcesses(kLauncher));
    }
    static void EndCompanions() {
        // One that has only just been started would not hear that it shall end.
        for (const wchar_t* const name : {kInteraction, kLauncher, kBare})
            EXPECT_TRUE(CountProcesses(name) == 0 || standins::WaitReady(name));
        EXPECT_TRUE(standins::QuitAll());
        for (const wchar_t* const name : {kInteraction, kLauncher, kBare}) {
            while (CountProcesses(name) != 0)
                Sleep(1);
        }
    }

    static DWORD Stored(const wchar_t* name) {
        const auto value = ReadValue(HKEY_CURRENT_USER, kSettingsKey, name);
        EXPECT_TRUE(value && value->type == REG_DWORD && value->bytes.size() == 4);
        return value ? value->Dword() : ~0u;
    }

    static constexpr wchar_t kViewerKey[] = L"SOFTWARE\\Wow6432Node\\Brimlake\\Plansight\\ProductInfo";

    ScratchRegistry registry;
    TemporaryFolder folder;
    PlugInDll dll;
    driverhost::ComRef<IPrintOemUI2> object = dll.CreateObject();
};

// --- the filter and the events on which nothing is done

struct Filter {
    DOCEVENT_FILTER head;
    DWORD more[5];
};

TEST_F(DocumentEvents, AreAskedForWhereThereIsRoomForThree) {
    for (const UINT room : {0u, 1u, 2u, 3u, 6u}) {
        Filter filter;
        std::memset(&filter, 0xEE, sizeof filter);
        filter.head.cElementsAllocated = room;
        Filter expected = filter;
        if (room >= 3) {
            expected.head.cElementsReturned = 3;
            std::copy_n(std::begin({13u, 12u, 5u}), 3, expected.head.aDocEventCall);
        }
        EXPECT_EQ(room >= 3 ? DOCUMENTEVENT_SUCCESS : DOCUMENTEVENT_UNSUPPORTED,
                  Send(DOCUMENTEVENT_QUERYFILTER, &filter));
        EXPECT_EQ(0, std::memcmp(&expected, &filter, sizeof filter)) << room;
    }
    EXPECT_EQ(DOCUMENTEVENT_UNSUPPORTED, Send(DOCUMENTEVENT_QUERYFILTER, nullptr));
    SetQueue(PRINTER_ATTRIBUTE_DIRECT);
    for (const INT event : {DOCUMENTEVENT_QUERYFILTER, DOCUMENTEVENT_STARTDOC, DOCUMENTEVENT_ENDDOCPOST})
        EXPECT_EQ(S_OK, object->DocumentEvent(nullptr, nullptr, event, 0, nullptr, 0, nullptr, nullptr))
            << "without a place for the result";
}

int g_calls = 0;

// Stands in for every import: the caller cleans up, whatever it passed.
INT_PTR CountCall() {
    ++g_calls;
    return 0;
}

TEST_F(DocumentEvents, ButTheStartCallNothing) {
    Filter filter = {};
    filter.head.cElementsAllocated = 3;
    g_calls = 0;
    {
        std::list<ImportPatch> patches;
        for (const Import& import : ImportsOf(dll.Module()))
            patches.emplace_back(dll.Module(), import.function.c_str(), AddressOf(CountCall));
        EXPECT_GT(patches.size(), 50u);
        for (INT event = -1; event <= 20; ++event) {
            if (event != DOCUMENTEVENT_STARTDOC) {
                EXPECT_EQ(DOCUMENTEVENT_SUCCESS, Send(event, &filter)) << event;
            }
        }
    }
    EXPECT_EQ(0, g_calls);
}

// --- the start of a document

struct StartOfDocument : DocumentEvents {};

TEST_F(StartOfDocument, RecordsWhoPrintsAndStartsBothCompanions) {
    EXPECT_EQ("1 1", Start());
    DWORD session = 0;
    ASSERT_TRUE(ProcessIdToSessionId(GetCurrentProcessId(), &session));
    EXPECT_EQ(session, Stored(L"SessionId"));
    EXPECT_EQ(GetCurrentProcessId(), Stored(L"ID"));
    EXPECT_EQ("1 1", Start()) << "a second document finds them running";
    // Nor does the one that runs keep the other from being started.
    for (const wchar_t* const running : {kInteraction, kLauncher}) {
        EndCompanions();
        EXPECT_TRUE(standins::StartCompanion(folder.File(running)));
        EXPECT_TRUE(standins::WaitReady(running));
        EXPECT_EQ("1 1", Start());
    }
}

std::vector<std::wstring> g_asked;  // in one order: what is stored, and what is started

LSTATUS WINAPI RecordStore(HKEY, LPCWSTR name, DWORD, DWORD, const BYTE* data, DWORD) {
    g_asked.push_back(std::wstring(name) + L" " + std::to_wstring(*reinterpret_cast<const DWORD*>(data)));
    return ERROR_SUCCESS;
}

BOOL WINAPI RecordStart(SHELLEXECUTEINFOW* start) {
    EXPECT_EQ(112u, start->cbSize);
    EXPECT_EQ(static_cast<ULONG>(SEE_MASK_NOCLOSEPROCESS), start->fMask);
    EXPECT_TRUE(!start->hwnd && !start->lpParameters && !start->lpDirectory);
    EXPECT_EQ(SW_SHOWNOACTIVATE, start->nShow) << "whoever prints keeps the keyboard";
    g_asked.push_back(start->lpVerb + std::wstring(L" ") + start->lpFile);
    return TRUE;
}

FARPROC WINAPI FindRecording(HMODULE module, LPCSTR name) {
    return name == std::string("ShellExecuteExW") ? reinterpret_cast<FARPROC>(AddressOf(RecordStart))
                                                  : GetProcAddress(module, name);
}

BOOL WINAPI Fail() {
    return FALSE;
}

DWORD WINAPI ConsoleSession() {
    return 77;
}

bool g_refused = false;

void* __cdecl RefuseOnce(size_t bytes) {
    return std::exchange(g_refused, true) ? std::malloc(bytes) : nullptr;
}

TEST_F(StartOfDocument, StoresSessionAndIdBeforeItStartsInteractionAndLauncher) {
    const HMODULE module = dll.Module();
    const ImportPatch store(module, "RegSetValueExW", AddressOf(RecordStore));
    const ImportPatch find(module, "GetProcAddress", AddressOf(FindRecording));
    const ImportPatch session(module, "ProcessIdToSessionId", AddressOf(Fail));
    const ImportPatch console(module, "WTSGetActiveConsoleSessionId", AddressOf(ConsoleSession));
    const auto expectAsked = [&](DWORD id) {
        const std::wstring open = L"open " + folder.File(L"");
        g_asked.clear();
        Start();
        EXPECT_EQ((std::vector<std::wstring>{L"SessionId 77", L"ID " + std::to_wstring(id),
                                             open + kInteraction, open + kLauncher}),
                  g_asked);
    };
    expectAsked(GetCurrentProcessId());
    for (const char* const function : {"K32EnumProcesses", "K32EnumProcessModules", "OpenProcess"}) {
        SCOPED_TRACE(function);
        const ImportPatch nameless(module, function, AddressOf(Fail));
        expectAsked(0);  // a name that cannot be found
    }
    const ImportPatch memory(module, "malloc", AddressOf(RefuseOnce));
    g_asked.clear();
    g_refused = false;
    Start();
    EXPECT_TRUE(g_refused && g_asked.empty()) << "the document is printed all the same";
}

TEST_F(StartOfDocument, TakesBeginningsOfYesForAYes) {
    const struct {
        const wchar_t* option;
        bool launches;
    } cases[] = {{L"YES", true}, {L"yes", true}, {L"Ye", true},    {L"y", true},  {L"", true},
                 {L"NO", false}, {L"n", false},  {L"YESS", false}, {L"0", false}, {L" YES", false}};
    for (const auto& [option, launches] : cases) {
        SetOption(option);
        EXPECT_EQ(launches ? "1 1" : "1 0", Start()) << testing::PrintToString(option);
        EndCompanions();
    }
    // A missing option is created empty, which is a yes from the next document on.
    RegDeleteKeyW(HKEY_CURRENT_USER, kSettingsKey);
    EXPECT_EQ("1 0", Start());
    EXPECT_TRUE(ReadValue(HKEY_CURRENT_USER, kSettingsKey, L"LaunchKZPView"));
    EXPECT_EQ("1 1", Start());
}

WINBOOL WINAPI TellVersion5(OSVERSIONINFOW* version) {
    version->dwMajorVersion = 5;
    return TRUE;
}

TEST_F(StartOfDocument, GoesOnWithWhatTheMachineHas) {
    const struct {
        const char* what;
        const char* running;
        std::function<void()> prepare;
    } cases[] = {
        {"a queue that is not spooled", "0 0",
         [] { SetQueue(PRINTER_ATTRIBUTE_LOCAL | PRINTER_ATTRIBUTE_DIRECT); }},
        {"no queue", "0 0", [] { RegDeleteKeyW(HKEY_LOCAL_MACHINE, kQueueKey); }},
        {"no viewer's location", "1 0", [] { RegDeleteKeyW(HKEY_LOCAL_MACHINE, kViewerKey); }},
        {"no viewer there", "1 0", [] { SetViewer(L"C:\\windows\\"); }},
        {"no closing backslash", "1 0", [&] { SetViewer(folder.Path()); }},
        {"a help path as long as is read", "1 1", [&] { SetHelpPath(FolderOf(129)); }},
        {"one character more", "0 0", [&] { SetHelpPath(FolderOf(130)); }},
        {"far longer than any buffer", "0 0", [&] { SetHelpPath(FolderOf(2000)); }},
        {"the folder alone", "1 1", [&] { SetHelpPath(folder.File(L"")); }},
        {"an empty path", "0 0", [] { SetHelpPath(L""); }},
        {"not terminated, and half a character at the end", "1 1",
         [&] {
             WriteValue(HKEY_LOCAL_MACHINE, kProductKey, L"HelpFilePath", REG_BINARY, FolderOf(129).data(),
                        259);
         }},
    };
    for (const auto& [what, running, prepare] : cases) {
        Reset();
        prepare();
        EXPECT_EQ(running, Start()) << what;
        EXPECT_EQ(GetCurrentProcessId(), Stored(L"ID"));
        EndCompanions();
    }
    Reset();
    for (const size_t length : {130u, 129u}) {
        const std::wstring longFolder = FolderOf(length - 1);
        CreateDirectoryW(longFolder.c_str(), nullptr);
        WriteFileText(longFolder + L"\\" + kViewer, "There it is.");
        SetViewer(longFolder + L"\\");
        EXPECT_EQ(length == 129 ? "1 1" : "1 0", Start()) << "129 characters are read";
    }
    EndCompanions();
    {
        const ImportPatch version(dll.Module(), "GetVersionExW", AddressOf(TellVersion5));
        EXPECT_EQ("0 0", Start()) << "before major version 6";
    }
    {
        const SystemFolder withoutShell(dll.Module(), {{L"shell32.dll", folder.File(L"none.dll")}});
        EXPECT_EQ("0 0", Start()) << "without the shell";
    }
    DeleteFileW(folder.File(kInteraction).c_str());
    const MessageBoxes boxes;
    EXPECT_EQ("0 1", Start());
    EXPECT_EQ(1u, boxes.Count()) << "the shell's own message";
    EndCompanions();

    wchar_t before[MAX_PATH] = {};
    GetCurrentDirectoryW(MAX_PATH, before);
    SetCurrentDirectoryW(folder.Path().c_str());
    SetHelpPath(kBare);
    SetOption(L"NO");
    EXPECT_EQ("0 0", Start());
    EXPECT_EQ(1u, CountProcesses(kBare)) << "a path without a folder, as it stands";
    SetCurrentDirectoryW(before);
}

TEST_F(StartOfDocument, GoesOnWithoutSettings) {
    ScratchRegistry::RefuseUserKeys();  // neither value is stored and the option cannot be read
    EXPECT_EQ("1 0", Start());
    EXPECT_FALSE(KeyExists(HKEY_CURRENT_USER, kSettingsKey));
}

TEST_F(StartOfDocument, NamesTheProcessUnlessItPrintsForAnother) {
    RegDeleteKeyW(HKEY_LOCAL_MACHINE, kViewerKey);
    folder.Take(L"KZPWriterUI.dll");
    const struct {
        const wchar_t* process;
        bool isApplication;
    } cases[] = {{L"drawing.exe", true},
                 {L"spoolsv.exe", false},
                 {L"SplWoW64.EXE", false},
                 {L"myspoolsv.exe", true},
                 {L"splwow64.exe.exe", true}};
    for (const auto& [name, isApplication] : cases) {
        const std::wstring program = folder.Take(L"printingapp.exe", name);
        std::wstring command = L"\"" + program + L"\" \"" + registry.Path() + L"\"";
        STARTUPINFOW startup = {};
        startup.cb = sizeof startup;
        PROCESS_INFORMATION started = {};
        EXPECT_TRUE(CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                                   &startup, &started));
        const UniqueKernelHandle process(started.hProcess), thread(started.hThread);
        EXPECT_EQ(WAIT_OBJECT_0, WaitForSingleObject(process.Get(), 20000));
        DWORD status = ~0u;
        GetExitCodeProcess(process.Get(), &status);
        EXPECT_EQ(0u, status);
        EXPECT_EQ(isApplication ? started.dwProcessId : 0u, Stored(L"ID")) << testing::PrintToString(name);
        EXPECT_EQ(1u, CountProcesses(kInteraction)) << "whoever prints, the companion asks";
    }
}

TEST_F(StartOfDocument, LeaksNoHandle) {
    const auto lifeOfCompanions = [&] {
        Start();
        EndCompanions();
    };
    lifeOfCompanions();  // the shell keeps some for itself at its first start
    const size_t before = CountHandles();
    for (int i = 0; i < 5; ++i)
        lifeOfCompanions();
    for (int i = 0; i < 100; ++i)
        Start();
    EXPECT_EQ(before, CountHandles());
}

}  // namespace

}  // namespace kzp::test

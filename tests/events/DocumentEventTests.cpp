// What the plug-in does with the events of a document: seen from the driver, the registry and the process
// list.
#include <gtest/gtest.h>
#include <windows.h>

#include <shellapi.h>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "driverkit/printoem.h"
#include "tests/events/PrintingMachine.h"
#include "tests/support/Counters.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/MessageBoxes.h"
#include "tests/support/SystemFolder.h"
#include "tools/driverhost/Text.h"
#include "tools/standins/companions/Companions.h"

namespace kzp::test {

namespace {

// --- the filter and the events on which nothing is done

struct Filter {
    DOCEVENT_FILTER head;
    DWORD more[5];
};

TEST(EventFilter, AsksForThreeEventsWhereThereIsRoomAndLeavesTheRestAlone) {
    PrintingMachine machine;
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
                  machine.Send(DOCUMENTEVENT_QUERYFILTER, &filter));
        EXPECT_EQ(0, std::memcmp(&expected, &filter, sizeof filter)) << room;
    }
    EXPECT_EQ(DOCUMENTEVENT_UNSUPPORTED, machine.Send(DOCUMENTEVENT_QUERYFILTER, nullptr));
}

int g_calls = 0;

// Stands in for every import: the caller cleans up, whatever it passed.
INT_PTR CountCall() {
    ++g_calls;
    return 0;
}

TEST(OtherEvents, SucceedWithoutCallingAnything) {
    PrintingMachine machine;
    Filter filter = {};
    filter.head.cElementsAllocated = 3;
    g_calls = 0;
    {
        std::vector<std::unique_ptr<ImportPatch>> patches;
        for (const Import& import : ImportsOf(machine.PlugInModule()))
            patches.push_back(std::make_unique<ImportPatch>(machine.PlugInModule(), import.function.c_str(),
                                                            AddressOf(CountCall)));
        EXPECT_GT(patches.size(), 50u);
        for (INT event = -1; event <= 20; ++event) {
            if (event == DOCUMENTEVENT_STARTDOC)
                continue;
            EXPECT_EQ(DOCUMENTEVENT_SUCCESS, machine.Send(event, &filter)) << event;
        }
    }
    EXPECT_EQ(0, g_calls);
    EXPECT_FALSE(ReadValue(HKEY_CURRENT_USER, kSettingsKey, L"ID"));
}

TEST(OtherEvents, NeedNoPlaceForTheResult) {
    PrintingMachine machine;
    machine.SetQueueAttributes(PRINTER_ATTRIBUTE_DIRECT);
    for (const INT event : {DOCUMENTEVENT_QUERYFILTER, DOCUMENTEVENT_STARTDOC, DOCUMENTEVENT_ENDDOCPOST})
        EXPECT_EQ(S_OK,
                  machine.Object()->DocumentEvent(nullptr, nullptr, event, 0, nullptr, 0, nullptr, nullptr));
}

// --- the start of a document

DWORD Stored(const wchar_t* name) {
    const auto value = ReadValue(HKEY_CURRENT_USER, kSettingsKey, name);
    EXPECT_TRUE(value && value->type == REG_DWORD && value->bytes.size() == 4);
    return value ? value->Dword() : ~0u;
}

TEST(StartOfDocument, RecordsWhoPrintsAndStartsBothCompanions) {
    PrintingMachine machine;
    machine.InstallViewer();
    EXPECT_EQ(DOCUMENTEVENT_SUCCESS, machine.StartDocument());
    DWORD session = 0;
    ASSERT_TRUE(ProcessIdToSessionId(GetCurrentProcessId(), &session));
    EXPECT_EQ(session, Stored(L"SessionId"));
    EXPECT_EQ(GetCurrentProcessId(), Stored(L"ID"));
    EXPECT_EQ("1 1", machine.Running());
    // A second document finds them running.
    EXPECT_EQ(DOCUMENTEVENT_SUCCESS, machine.StartDocument());
    EXPECT_EQ("1 1", machine.Running());
    // Nor does the one that runs keep the other from being started.
    for (const wchar_t* const running : {kInteraction, kLauncher}) {
        machine.EndCompanions();
        machine.Run(running);
        machine.StartDocument();
        EXPECT_EQ("1 1", machine.Running());
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

TEST(StartOfDocument, StoresSessionAndIdBeforeItStartsInteractionAndLauncher) {
    PrintingMachine machine;
    machine.InstallViewer();
    const HMODULE module = machine.PlugInModule();
    const ImportPatch store(module, "RegSetValueExW", AddressOf(RecordStore));
    const ImportPatch find(module, "GetProcAddress", AddressOf(FindRecording));
    const ImportPatch session(module, "ProcessIdToSessionId", AddressOf(Fail));
    const ImportPatch console(module, "WTSGetActiveConsoleSessionId", AddressOf(ConsoleSession));
    const auto asked = [&](DWORD id) {
        const std::wstring open = L"open " + machine.Folder() + L"\\";
        return std::vector<std::wstring>{L"SessionId 77", L"ID " + std::to_wstring(id), open + kInteraction,
                                         open + kLauncher};
    };
    g_asked.clear();
    EXPECT_EQ(DOCUMENTEVENT_SUCCESS, machine.StartDocument());
    EXPECT_EQ(asked(GetCurrentProcessId()), g_asked);

    for (const char* const function : {"K32EnumProcesses", "K32EnumProcessModules", "OpenProcess"}) {
        const ImportPatch nameless(module, function, AddressOf(Fail));
        g_asked.clear();
        EXPECT_EQ(DOCUMENTEVENT_SUCCESS, machine.StartDocument());
        EXPECT_EQ(asked(0), g_asked) << function << ": a name that cannot be found";
    }
}

WINBOOL WINAPI TellVersion5(OSVERSIONINFOW* version) {
    version->dwMajorVersion = 5;
    return TRUE;
}

TEST(StartOfDocument, StartsNothingForAQueueThatIsNotSpooledNorBeforeMajorVersion6) {
    PrintingMachine machine;
    machine.InstallViewer();
    {
        const ImportPatch version(machine.PlugInModule(), "GetVersionExW", AddressOf(TellVersion5));
        EXPECT_EQ(DOCUMENTEVENT_SUCCESS, machine.StartDocument());
    }
    machine.SetQueueAttributes(PRINTER_ATTRIBUTE_LOCAL | PRINTER_ATTRIBUTE_DIRECT);
    EXPECT_EQ(DOCUMENTEVENT_SUCCESS, machine.StartDocument());
    RegDeleteKeyW(HKEY_LOCAL_MACHINE, kQueueKey);
    EXPECT_EQ(DOCUMENTEVENT_SUCCESS, machine.StartDocument());
    EXPECT_EQ(GetCurrentProcessId(), Stored(L"ID"));
    EXPECT_EQ("0 0", machine.Running());
}

TEST(StartOfDocument, TakesBeginningsOfYesForAYes) {
    PrintingMachine machine;
    machine.InstallViewer();
    const struct {
        const wchar_t* option;
        bool launches;
    } cases[] = {{L"YES", true}, {L"yes", true}, {L"Ye", true},    {L"y", true},  {L"", true},
                 {L"NO", false}, {L"n", false},  {L"YESS", false}, {L"0", false}, {L" YES", false}};
    for (const auto& test : cases) {
        machine.SetViewerOption(test.option);
        machine.StartDocument();
        EXPECT_EQ(test.launches ? "1 1" : "1 0", machine.Running()) << driverhost::Utf8(test.option);
        machine.EndCompanions();
    }
    // A missing option is created empty, which is a yes from the next document on.
    RegDeleteKeyW(HKEY_CURRENT_USER, kSettingsKey);
    machine.StartDocument();
    EXPECT_EQ("1 0", machine.Running());
    EXPECT_TRUE(ReadValue(HKEY_CURRENT_USER, kSettingsKey, L"LaunchKZPView"));
    machine.StartDocument();
    EXPECT_EQ("1 1", machine.Running());
}

TEST(StartOfDocument, NeedsTheViewerItself) {
    PrintingMachine machine;
    machine.StartDocument();
    EXPECT_EQ("1 0", machine.Running()) << "no location stored";
    machine.SetViewerLocation(machine.Folder() + L"\\");
    machine.StartDocument();
    EXPECT_EQ("1 0", machine.Running()) << "no program there";
    machine.InstallViewer();
    machine.SetViewerLocation(machine.Folder());
    machine.StartDocument();
    EXPECT_EQ("1 0", machine.Running()) << "no closing backslash";
    for (const size_t length : {130u, 129u}) {
        const std::wstring beginning = machine.Folder() + L"\\";
        const std::wstring folder = beginning + std::wstring(length - 1 - beginning.size(), L'v');
        CreateDirectoryW(folder.c_str(), nullptr);
        WriteFileText(folder + L"\\" + kViewer, "There it is.");
        machine.SetViewerLocation(folder + L"\\");
        machine.StartDocument();
        EXPECT_EQ(length == 129 ? "1 1" : "1 0", machine.Running()) << "129 characters are read";
    }
}

TEST(StartOfDocument, FindsTheCompanionsBesideTheHelpFile) {
    PrintingMachine machine;
    const std::wstring folder = machine.Folder() + L"\\";
    const auto ofLength = [&](size_t length) { return folder + std::wstring(length - folder.size(), L'h'); };
    const struct {
        const char* what;
        std::wstring path;
        const char* running;
    } cases[] = {{"a path as long as is read", ofLength(129), "1 0"},
                 {"one character more", ofLength(130), "0 0"},
                 {"far longer than any buffer", ofLength(2000), "0 0"},
                 {"the folder alone", folder, "1 0"},
                 {"an empty path", L"", "0 0"}};
    for (const auto& test : cases) {
        machine.SetHelpPath(test.path);
        EXPECT_EQ(DOCUMENTEVENT_SUCCESS, machine.StartDocument());
        EXPECT_EQ(test.running, machine.Running()) << test.what;
        machine.EndCompanions();
    }
    // Bytes of a binary value, not terminated and with half a character at the end.
    WriteValue(HKEY_LOCAL_MACHINE, kProductKey, L"HelpFilePath", REG_BINARY, ofLength(129).data(), 259);
    machine.StartDocument();
    EXPECT_EQ("1 0", machine.Running());
}

TEST(StartOfDocument, StartsAPathWithoutAFolderAsItStands) {
    PrintingMachine machine;
    const std::wstring name = L"bare-companion.exe";
    machine.Install(name);
    wchar_t before[MAX_PATH] = {};
    GetCurrentDirectoryW(MAX_PATH, before);
    SetCurrentDirectoryW(machine.Folder().c_str());
    machine.SetHelpPath(name);
    machine.StartDocument();
    EXPECT_EQ(1u, CountProcesses(name.c_str()));
    EXPECT_EQ("0 0", machine.Running());
    SetCurrentDirectoryW(before);
}

TEST(StartOfDocument, GoesOnWhenACompanionOrTheShellIsGone) {
    PrintingMachine machine;
    machine.InstallViewer();
    DeleteFileW((machine.Folder() + L"\\" + kInteraction).c_str());
    const MessageBoxes boxes;
    EXPECT_EQ(DOCUMENTEVENT_SUCCESS, machine.StartDocument());
    EXPECT_EQ(1u, boxes.Count()) << "the shell's own message";
    EXPECT_EQ("0 1", machine.Running());

    machine.EndCompanions();
    const SystemFolder withoutShell(machine.PlugInModule(),
                                    {{L"shell32.dll", machine.Folder() + L"\\none.dll"}});
    EXPECT_EQ(DOCUMENTEVENT_SUCCESS, machine.StartDocument());
    EXPECT_EQ("0 0", machine.Running());
}

TEST(StartOfDocument, GoesOnWithoutSettings) {
    PrintingMachine machine;
    machine.InstallViewer();
    ScratchRegistry::RefuseUserKeys();  // neither value is stored and the option cannot be read
    EXPECT_EQ(DOCUMENTEVENT_SUCCESS, machine.StartDocument());
    EXPECT_FALSE(KeyExists(HKEY_CURRENT_USER, kSettingsKey));
    EXPECT_EQ("1 0", machine.Running());
}

// --- the process that prints

TEST(PrintingProcess, IsNamedUnlessItPrintsForAnother) {
    PrintingMachine machine;
    const struct {
        const wchar_t* process;
        bool isApplication;
    } cases[] = {{L"drawing.exe", true},
                 {L"spoolsv.exe", false},
                 {L"SplWoW64.EXE", false},
                 {L"myspoolsv.exe", true},
                 {L"splwow64.exe.exe", true}};
    for (const auto& test : cases) {
        const DWORD pid = machine.PrintIn(test.process);
        EXPECT_EQ(test.isApplication ? pid : 0u, Stored(L"ID")) << driverhost::Utf8(test.process);
        EXPECT_EQ("1 0", machine.Running()) << "whoever prints, the companion asks";
    }
}

TEST(StartOfDocument, LeaksNoHandle) {
    PrintingMachine machine;
    machine.InstallViewer();
    const auto lifeOfCompanions = [&] {
        machine.StartDocument();
        machine.EndCompanions();
    };
    lifeOfCompanions();  // the shell keeps some for itself at its first start
    const size_t before = CountHandles();
    for (int i = 0; i < 5; ++i)
        lifeOfCompanions();
    for (int i = 0; i < 100; ++i)
        machine.StartDocument();
    EXPECT_EQ(before, CountHandles());
}

}  // namespace

}  // namespace kzp::test

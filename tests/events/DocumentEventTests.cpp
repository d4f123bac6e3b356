// What the plug-in does with the events of a document: seen from the driver, the registry and the process
// list, on a machine where companions really run.
#include <gtest/gtest.h>
#include <windows.h>

#include <process.h>
#include <shellapi.h>

#include <cstdlib>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "core/InteractionApp.h"
#include "driverkit/printoem.h"
#include "tests/support/Counters.h"
#include "tests/support/Files.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/ScratchRegistry.h"
#include "tools/driverhost/PlugIn.h"
#include "tools/standins/companions/Companions.h"

namespace kzp::test {

namespace {

constexpr wchar_t kInteraction[] = L"KzpWriterInteraction.exe";
constexpr wchar_t kLauncher[] = L"KZPAppLauncher.exe";
constexpr wchar_t kViewer[] = L"PlansightApp.exe";
constexpr wchar_t kViewerKey[] = L"SOFTWARE\\Wow6432Node\\Brimlake\\Plansight\\ProductInfo";

bool Runs(const wchar_t* name) {
    return FindOtherProcessByName(name) != 0;
}

struct DocumentEvents : testing::Test {
    DocumentEvents() {
        for (const wchar_t* const name : {kInteraction, kLauncher, kViewer})
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
    std::wstring PathOf(size_t length) const {
        const std::wstring beginning = folder.File(L"");
        return beginning + std::wstring(length - beginning.size(), L'h');
    }

    // Answers the event's result.
    INT Send(INT event, void* out = nullptr) const {
        INT result = -1;
        EXPECT_EQ(S_OK, object->DocumentEvent(nullptr, nullptr, event, 0, nullptr, 0, out, &result));
        return result;
    }

    void Start() const { EXPECT_EQ(DOCUMENTEVENT_SUCCESS, Send(DOCUMENTEVENT_STARTDOC)); }

    static void EndCompanions() {
        // One that has only just been started would not hear that it shall end.
        for (const wchar_t* const name : {kInteraction, kLauncher})
            EXPECT_TRUE(!Runs(name) || standins::WaitReady(name));
        EXPECT_TRUE(standins::QuitAll());
        while (Runs(kInteraction) || Runs(kLauncher))
            Sleep(1);
    }

    static DWORD Stored(const wchar_t* name) {
        const auto value = ReadValue(HKEY_CURRENT_USER, kSettingsKey, name);
        EXPECT_TRUE(value && value->type == REG_DWORD && value->bytes.size() == 4);
        return value ? value->Dword() : ~0u;
    }

    ScratchRegistry registry;
    TemporaryFolder folder;
    driverhost::PlugIn dll;
    driverhost::ComRef<IPrintOemUI2> object = dll.CreateObject();
};

TEST_F(DocumentEvents, AreAskedForWhereThereIsRoomForThreeAndButTheStartDoNothing) {
    using Words = std::vector<DWORD>;
    Words filter = {32, 2, 7, 7, 7, 7, 7, 7};
    EXPECT_EQ(DOCUMENTEVENT_UNSUPPORTED, Send(DOCUMENTEVENT_QUERYFILTER, filter.data()));
    EXPECT_EQ((Words{32, 2, 7, 7, 7, 7, 7, 7}), filter);
    filter[1] = 3;
    EXPECT_EQ(DOCUMENTEVENT_SUCCESS, Send(DOCUMENTEVENT_QUERYFILTER, filter.data()));
    EXPECT_EQ((Words{32, 3, 7, 3, 13, 12, 5, 7}), filter);
    EXPECT_EQ(DOCUMENTEVENT_UNSUPPORTED, Send(DOCUMENTEVENT_QUERYFILTER, nullptr));
    for (INT event = -1; event <= 20; ++event) {
        if (event != DOCUMENTEVENT_STARTDOC) {
            EXPECT_EQ(DOCUMENTEVENT_SUCCESS, Send(event, filter.data())) << event;
        }
    }
    EXPECT_FALSE(ReadValue(HKEY_CURRENT_USER, kSettingsKey, L"ID"));
    SetQueue(PRINTER_ATTRIBUTE_DIRECT);
    for (const INT event : {DOCUMENTEVENT_QUERYFILTER, DOCUMENTEVENT_STARTDOC, DOCUMENTEVENT_ENDDOCPOST})
        EXPECT_EQ(S_OK, object->DocumentEvent(nullptr, nullptr, event, 0, nullptr, 0, nullptr, nullptr))
            << "without a place for the result";
}

TEST_F(DocumentEvents, RecordWhoPrintsAndStartBothCompanions) {
    Start();
    EXPECT_TRUE(Runs(kInteraction) && Runs(kLauncher));
    DWORD session = 0;
    ASSERT_TRUE(ProcessIdToSessionId(GetCurrentProcessId(), &session));
    EXPECT_EQ(session, Stored(L"SessionId"));
    EXPECT_EQ(GetCurrentProcessId(), Stored(L"ID"));
}

TEST_F(DocumentEvents, NameTheProcessUnlessItPrintsForAnother) {
    RegDeleteKeyW(HKEY_LOCAL_MACHINE, kViewerKey);
    folder.Take(L"KZPWriterUI.dll");
    for (const auto& [name, isApplication] : {std::pair{L"drawing.exe", true},
                                              {L"spoolsv.exe", false},
                                              {L"SplWoW64.EXE", false},
                                              {L"myspoolsv.exe", true}}) {
        const std::wstring program = folder.Take(L"printingapp.exe", name);
        const std::wstring key = L"\"" + registry.Path() + L"\"";
        EXPECT_EQ(0, _wspawnl(_P_WAIT, program.c_str(), L"printingapp", key.c_str(), nullptr));
        EXPECT_EQ(isApplication, Stored(L"ID") != 0) << testing::PrintToString(name);
        EXPECT_TRUE(Runs(kInteraction)) << "whoever prints, the companion asks";
    }
}

// --- what is asked of the system, while nothing is really started

std::vector<std::wstring> g_asked;  // in one order: what is stored, and what is started

LSTATUS WINAPI RecordStore(HKEY, LPCWSTR name, DWORD, DWORD, const BYTE* data, DWORD) {
    g_asked.push_back(std::wstring(name) + L" " + std::to_wstring(*reinterpret_cast<const DWORD*>(data)));
    return ERROR_SUCCESS;
}

BOOL WINAPI RecordStart(SHELLEXECUTEINFOW* start) {
    EXPECT_EQ(static_cast<ULONG>(SEE_MASK_NOCLOSEPROCESS), start->fMask);
    EXPECT_TRUE(!start->hwnd && !start->lpParameters && !start->lpDirectory);
    EXPECT_EQ(SW_SHOWNOACTIVATE, start->nShow) << "whoever prints keeps the keyboard";
    g_asked.push_back(start->lpVerb + std::wstring(L" ") + start->lpFile);
    start->hProcess = CreateEventW(nullptr, TRUE, FALSE, nullptr);
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

struct AskedAtStart : DocumentEvents {
    const std::vector<std::wstring>& Asked() const {
        g_asked.clear();
        Start();
        return g_asked;
    }

    const ImportPatch find{dll.Module(), "GetProcAddress", AddressOf(FindRecording)};
    const std::wstring open = L"open " + folder.File(L"");
};

TEST_F(AskedAtStart, StoresSessionAndIdBeforeItStartsInteractionAndLauncher) {
    const HMODULE module = dll.Module();
    const ImportPatch store(module, "RegSetValueExW", AddressOf(RecordStore));
    const ImportPatch session(module, "ProcessIdToSessionId", AddressOf(Fail));
    const ImportPatch console(module, "WTSGetActiveConsoleSessionId", AddressOf(ConsoleSession));
    std::vector<std::wstring> expected = {L"SessionId 77", L"ID " + std::to_wstring(GetCurrentProcessId()),
                                          open + kInteraction, open + kLauncher};
    EXPECT_EQ(expected, Asked());
    const size_t handles = CountHandles();
    const ImportPatch nameless(module, "K32EnumProcesses", AddressOf(Fail));
    expected[1] = L"ID 0";
    EXPECT_EQ(expected, Asked());
    EXPECT_EQ(handles, CountHandles());
    const ImportPatch memory(module, "malloc", AddressOf(RefuseOnce));
    g_refused = false;
    EXPECT_TRUE(Asked().empty()) << "the document is printed all the same";
    EXPECT_TRUE(g_refused);
}

TEST_F(AskedAtStart, GoesOnWithWhatTheMachineHas) {
    const std::vector<std::wstring> none, one = {open + kInteraction},
                                          both = {open + kInteraction, open + kLauncher};
    const struct {
        const char* what;
        const std::vector<std::wstring>& expected;
        std::function<void()> prepare;
    } cases[] = {
        {"a user who wants the viewer", both, [] {}},
        {"the beginning of a yes", both, [] { SetOption(L"y"); }},
        {"more than a yes", one, [] { SetOption(L"YESS"); }},
        {"a direct queue", none, [] { SetQueue(PRINTER_ATTRIBUTE_LOCAL | PRINTER_ATTRIBUTE_DIRECT); }},
        {"no closing backslash", one, [&] { SetViewer(folder.Path()); }},
        {"a help path as long as is read", both, [&] { SetHelpPath(PathOf(129)); }},
        {"one character more", none, [&] { SetHelpPath(PathOf(130)); }},
        {"an empty path", none, [] { SetHelpPath(L""); }},
        {"no option", one, [] { RegDeleteKeyW(HKEY_CURRENT_USER, kSettingsKey); }},
    };
    for (const auto& [what, expected, prepare] : cases) {
        Reset();
        prepare();
        EXPECT_EQ(expected, Asked()) << what;
    }
    EXPECT_EQ(both, Asked()) << "a missing option is created empty, which is a yes from then on";
    WriteValue(HKEY_LOCAL_MACHINE, kProductKey, L"HelpFilePath", REG_BINARY, PathOf(129).data(), 259);
    EXPECT_EQ(both, Asked()) << "not terminated, and half a character at the end";
    SetHelpPath(L"alone.exe");
    const std::vector<std::wstring> asItStands(2, L"open alone.exe");
    EXPECT_EQ(asItStands, Asked()) << "a path without a folder";
}

TEST_F(AskedAtStart, LeavesTheCompanionThatRunsAndStartsTheOther) {
    for (const auto& [running, other] :
         {std::pair{kInteraction, kLauncher}, std::pair{kLauncher, kInteraction}}) {
        EXPECT_TRUE(standins::StartCompanion(folder.File(running)));
        EXPECT_TRUE(standins::WaitReady(running));
        EXPECT_EQ(std::vector{open + other}, Asked());
        EndCompanions();
    }
}

}  // namespace

}  // namespace kzp::test

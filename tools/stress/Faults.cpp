// Each platform call of the plug-in refused once: in each public operation, in whole sheets and in an
// installation that is removed again. The host may find itself refused; nothing else may happen.
#include <algorithm>
#include <functional>
#include <map>

#include "tests/support/InstallerSession.h"
#include "tools/driverhost/PrintCommand.h"
#include "tools/stress/FailOnce.h"
#include "tools/stress/Stage.h"

namespace kzp::stress {
namespace {

using driverhost::DocumentSession;
using driverhost::PlugIn;

void AskDeviceModes(const PlugIn& plugIn, Dice&) {
    const auto object = plugIn.CreateObject();
    driverhost::PlugInInfo(object.Get(), OEMGI_GETSIGNATURE);
    BYTE in[560] = {}, out[560] = {};
    for (DWORD mode = OEMDM_SIZE; mode <= OEMDM_MERGE; ++mode) {
        OEMDMPARAM param = {};
        param.cbSize = sizeof param;
        param.pOEMDMIn = in;
        param.pOEMDMOut = out;
        const HRESULT result = object->DevMode(mode, &param);
        EXPECT_TRUE(result == S_OK || result == E_FAIL) << result;
    }
}

LONG_PTR CALLBACK TakeEverything(HANDLE, UINT, LPARAM, LPARAM) {
    return 1;
}

void ShowItemsAndPages(const PlugIn& plugIn, Dice&) {
    DocumentSession session(plugIn, {});
    session.PresentItems();
    PROPSHEETUI_INFO info = {};
    info.cbSize = sizeof info;
    info.Version = PROPSHEETUI_INFO_VERSION;
    info.pfnComPropSheet = TakeEverything;
    const HRESULT result = session.Object()->DocumentPropertySheets(&info, 0);
    EXPECT_TRUE(result == S_OK || result == E_OUTOFMEMORY) << result;
    session.TellCallback(CPSUICB_REASON_APPLYNOW, nullptr);
}

void PrintOne(const PlugIn& plugIn, Dice&) {
    for (const auto& call : driverhost::PrintDocument(plugIn, nullptr, L"A document").calls)
        EXPECT_EQ(S_OK, call.result) << "event " << call.event << ": the document is lost";
}

void WINAPI WaitForNothing(DWORD) {}

int WINAPI PressOk(HWND, LPCWSTR, LPCWSTR, UINT) {
    return IDOK;
}

// In an installer's session, with the stand-ins in the system's folder, and no waits.
void InstallAndRemove(const PlugIn& plugIn, Dice&) {
    const test::InstallerSession session;
    const test::SystemFolder system(plugIn.Module(), test::SystemFolder::StandIns());
    const test::ImportPatch noWaits(plugIn.Module(), "Sleep", test::AddressOf(WaitForNothing));
    session.SetActionData(L"C:\\Driver\\kzpwriter.inf;C:\\Product");
    for (const char* const name : {"Install", "Uninstall"}) {
        const UINT answer = plugIn.Export<UINT(WINAPI*)(MSIHANDLE)>(name)(session.Handle());
        EXPECT_TRUE(answer == ERROR_SUCCESS || answer == ERROR_INSTALL_FAILURE ||
                    answer == ERROR_UNKNOWN_PROPERTY)
            << answer;
    }
}

void UseSheet(const PlugIn&, Dice& dice) {
    test::HostedSheet host;
    PlaySheet(host, [&](driverhost::SheetUser& user) {
        for (int edit = 0; edit < 4; ++edit)
            UseAnything(user, dice);
    });
}

struct Operation {
    const char* name;
    void (*perform)(const PlugIn&, Dice&);
    int most;         // calls of a function that are refused: the first, and others by chance
    int mostInBrief;  // in brief whole sheets and the installer lack only memory
};
constexpr Operation kOperations[] = {{"device modes", AskDeviceModes, 60, 2},
                                     {"items and pages", ShowItemsAndPages, 60, 2},
                                     {"a document", PrintOne, 60, 2},
                                     {"installing", InstallAndRemove, 4, 0},
                                     {"a sheet", UseSheet, 4, 0}};

// Answers how often the operation calls the function, in the plug-in loaded afresh.
int Perform(Campaign& run, const Operation& operation, const std::string& function, int refused) {
    run.Doing("%s: call %d of %s refused", operation.name, refused, function.c_str());
    const PlugIn plugIn;
    const test::ImportPatch boxes(plugIn.Module(), "MessageBoxW", test::AddressOf(PressOk));
    const QuietShell shell(plugIn.Module());
    const FailOnce fail(plugIn.Module(), function, refused);
    try {
        operation.perform(plugIn, run.Random());
    } catch (const driverhost::HostError& error) {
        EXPECT_TRUE(refused != 0 && error.text.find(L"takes too long") == std::wstring::npos) << error.what();
    }
    return fail.Calls();
}

// Played before the counting begins: refused, these themselves do not give back what they should; and
// with ShowWindow refused the platform paints, for the first time, what else stays hidden. An installation
// leaves its last printer open on purpose.
bool LeavesSomethingBehind(const Operation& operation, const std::string& function) {
    static const char* const kParts[] = {"Close",         "Free",  "Global", "ReleaseDC",
                                         "WindowLongPtr", "Unmap", "Show",   "ClosePrinter"};
    return operation.perform == InstallAndRemove || std::ranges::any_of(kParts, [&](const char* part) {
               return function.find(part) != std::string::npos;
           });
}

struct Faults : test::SheetTest {};

TEST_F(Faults, OfSinglePlatformCallsLoseNothingElse) {
    test::WriteText(HKEY_LOCAL_MACHINE, test::kProductKey, L"HelpFilePath", L"C:\\KZP\\writer.chm");
    test::WriteText(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Wow6432Node\\Brimlake\\Plansight\\ProductInfo",
                    L"Location", L"C:\\windows\\");
    test::WriteDword(HKEY_LOCAL_MACHINE, test::kQueueKey, L"Attributes", 0x40);

    struct Target {
        const Operation* operation;
        std::string function;
        int most;
    };
    std::vector<Target> targets;
    for (const std::string& function : FallibleImports(PlugIn().Module())) {
        const bool memory = function == "malloc";
        for (const Operation& operation : kOperations) {
            const int most = IsBrief() ? (memory ? 2 : operation.mostInBrief)
                                       : std::min(operation.most * (memory ? 10 : 1), 60);
            if (most > 0)
                targets.push_back({&operation, function, most});
        }
    }
    const auto counted = std::stable_partition(targets.begin(), targets.end(), [](const Target& target) {
        return LeavesSomethingBehind(*target.operation, target.function);
    });
    WarmUpSheets();
    const auto all = static_cast<int>(targets.size());
    for (Campaign run(all, static_cast<int>(counted - targets.begin())); run.Next();) {
        const Target& target = targets[static_cast<size_t>(run.Iteration())];
        const int calls = Perform(run, *target.operation, target.function, 0);
        for (int time = 1; time <= std::min(calls, target.most); ++time)
            Perform(run, *target.operation, target.function,
                    calls <= target.most || time == 1 ? time : 1 + run.Random().Below(calls));
    }
}

}  // namespace
}  // namespace kzp::stress

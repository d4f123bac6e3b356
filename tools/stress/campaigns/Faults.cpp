// Each platform call of the plug-in refused once, in each public operation.
#include <algorithm>
#include <cstring>
#include <iterator>
#include <map>
#include <memory>

#include "tests/support/MessageBoxes.h"
#include "tools/driverhost/PrintCommand.h"
#include "tools/driverhost/Text.h"
#include "tools/stress/Campaigns.h"
#include "tools/stress/FailOnce.h"
#include "tools/stress/World.h"

namespace stress {

namespace {

using driverhost::HostError;

constexpr wchar_t kViewerKey[] = L"SOFTWARE\\Wow6432Node\\Brimlake\\Plansight\\ProductInfo";

void CreateAndGreet(Run&, const driverhost::PlugIn& plugIn) {
    const auto object = plugIn.CreateObject();
    driverhost::PlugInInfo(object.Get(), OEMGI_GETSIGNATURE);
}

void AskDeviceModes(Run& run, const driverhost::PlugIn& plugIn) {
    const auto object = plugIn.CreateObject();
    BYTE in[560] = {}, out[560] = {};
    const OEM_DMEXTRAHEADER header = {560, 0x42524D4B, 0x03050007};
    std::memcpy(in, &header, sizeof header);
    for (DWORD mode = OEMDM_SIZE; mode <= OEMDM_MERGE; ++mode) {
        OEMDMPARAM param = {};
        param.cbSize = sizeof param;
        param.pOEMDMIn = in;
        param.pOEMDMOut = out;
        const HRESULT result = object->DevMode(mode, &param);
        run.Expect(result == S_OK || result == E_FAIL, L"DevMode answers %08lX", result);
    }
}

void ShowItemsAndPages(Run& run, const driverhost::PlugIn& plugIn) {
    driverhost::SessionOptions options;
    options.features = driverhost::DriverTree::Standard(plugIn.ResourceText(101));
    driverhost::DocumentSession session(plugIn, std::move(options));
    session.PresentItems();
    for (const auto& call : session.CommonUIPropCalls())
        run.Expect(call.result == S_OK || FAILED(call.result), L"CommonUIProp answers %08lX", call.result);
    PROPSHEETUI_INFO info = {};
    info.cbSize = sizeof info;
    info.Version = PROPSHEETUI_INFO_VERSION;
    info.pfnComPropSheet = TakeEverything;
    run.Expect(session.Object()->DocumentPropertySheets(&info, 0) == S_OK, L"no pages");
    session.TellCallback(CPSUICB_REASON_APPLYNOW, nullptr);
}

void PrintOne(Run& run, const driverhost::PlugIn& plugIn) {
    const auto object = plugIn.CreateObject();
    for (const auto& call : driverhost::PrintDocument(object.Get(), nullptr, L"A document").calls)
        run.Expect(call.result == S_OK, L"event %d fails: the document is lost", call.event);
}

struct Operation {
    const wchar_t* name;
    void (*perform)(Run&, const driverhost::PlugIn&);
};
constexpr Operation kOperations[] = {{L"creation", CreateAndGreet},
                                     {L"device modes", AskDeviceModes},
                                     {L"items and pages", ShowItemsAndPages},
                                     {L"a document", PrintOne}};

// How often the operation calls each function, in the plug-in loaded afresh.
std::map<std::string, LONG64> CountCalls(Run& run, const Operation& operation,
                                         const std::vector<Import>& imports) {
    run.Doing(L"%ls: nothing refused", operation.name);
    const driverhost::PlugIn plugIn(driverhost::BesideProgram(L"KZPWriterUI.dll"));
    // cppcheck-suppress unreadVariable
    const QuietShell shell(plugIn.Module());
    std::map<std::string, std::unique_ptr<FailOnce>> counters;
    for (const Import& import : imports)
        counters[import.function] = std::make_unique<FailOnce>(plugIn.Module(), import.function, 0);
    operation.perform(run, plugIn);
    std::map<std::string, LONG64> calls;
    for (const auto& [function, counter] : counters)
        calls[function] = counter->Calls();
    return calls;
}

// Again, with one call refused. The host may find itself refused; nothing else may happen.
void Refuse(Run& run, const Operation& operation, const std::string& function, LONG64 call) {
    const kzp::test::MessageBoxes boxes;
    run.Doing(L"%ls: call %lld of %hs refused", operation.name, call, function.c_str());
    const driverhost::PlugIn plugIn(driverhost::BesideProgram(L"KZPWriterUI.dll"));
    const QuietShell shell(plugIn.Module());
    const FailOnce fail(plugIn.Module(), function, call);
    try {
        operation.perform(run, plugIn);
    } catch (const HostError&) {
    }
    run.Tried();
}

// A whole journey: open, edit a little, OK.
LONG64 PerformSheet(Run& run, const std::string& function, LONG64 call) {
    run.Doing(L"a sheet: call %lld of %hs refused", call, function.c_str());
    kzp::test::HostedSheet host;
    const QuietShell shell(host.plugIn.Module());
    const FailOnce fail(host.plugIn.Module(), function, call);
    const auto closed = PlaySheet(
        host,
        [&](driverhost::SheetUser& user) {
            for (int edit = 0; edit < 4; ++edit)
                EditAtRandom(user, run.Random());
        },
        Ending::kOk);
    run.Expect(closed.has_value() || call != 0, L"the sheet fails by itself");
    return fail.Calls();
}

// The first call, and some of the others: a sheet takes a while.
void RefuseSomeCalls(Run& run, const std::string& function, int times) {
    const LONG64 calls = PerformSheet(run, function, 0);
    for (LONG64 time = 0; time < std::min<LONG64>(calls, times); ++time) {
        PerformSheet(run, function, time == 0 ? 1 : 1 + run.Random().Below(static_cast<int>(calls)));
        run.Tried();
    }
}

// Refuses the first call and some of the others of an installation that is taken away again.
void RefuseInstalling(Run& run, const std::string& function, int times) {
    const kzp::test::MessageBoxes boxes;
    LONG64 calls = 1;
    for (int time = 0; time <= std::min<LONG64>(calls, times); ++time) {
        // The first round refuses nothing, and counts.
        const LONG64 call = time < 2 ? time : 1 + run.Random().Below(static_cast<int>(calls));
        run.Doing(L"installing: call %lld of %hs refused", call, function.c_str());
        const driverhost::PlugIn plugIn(driverhost::BesideProgram(L"KZPWriterUI.dll"));
        const InstallerStage stage(plugIn.Module());
        const FailOnce fail(plugIn.Module(), function, call);
        run.Expect(stage.Play(), L"an action answers what it must not");
        if (time == 0)
            calls = fail.Calls();
        else
            run.Tried();
    }
}

struct Target {
    enum class What { kEachOperation, kWholeSheet, kInstalling };

    std::string function;
    What what;
};

// Played before the counting begins: refused, these themselves do not give back what they should; the
// run-time loses its lock for exceptions when it is unloaded after the first one, which only a lack of memory
// brings about; and with ShowWindow refused the platform paints, for the first time, what else stays hidden.
bool LeavesSomethingBehind(const std::string& function) {
    static constexpr const char* kFunctions[] = {
        "CloseHandle",       "FindClose",         "FreeLibrary",     "GlobalFree",         "GlobalHandle",
        "HeapFree",          "LocalFree",         "RegCloseKey",     "ClosePrinter",       "ReleaseDC",
        "GetWindowLongPtrW", "SetWindowLongPtrW", "UnmapViewOfFile", "CloseServiceHandle", "malloc",
        "ShowWindow"};
    return std::any_of(std::begin(kFunctions), std::end(kFunctions),
                       [&](const char* one) { return function == one; });
}

}  // namespace

void Faults(Run& run) {
    const kzp::test::ScratchRegistry registry;
    SetUpPrinter();
    kzp::test::WriteText(HKEY_LOCAL_MACHINE, kzp::test::kProductKey, L"HelpFilePath", L"C:\\KZP\\writer.chm");
    kzp::test::WriteText(HKEY_LOCAL_MACHINE, kViewerKey, L"Location", L"C:\\windows\\");
    kzp::test::WriteDword(HKEY_LOCAL_MACHINE, kzp::test::kQueueKey, L"Attributes", 0x40);

    std::vector<Import> imports;
    {
        const driverhost::PlugIn plugIn(driverhost::BesideProgram(L"KZPWriterUI.dll"));
        imports = kzp::test::ImportsOf(plugIn.Module());
    }
    const size_t all = imports.size();
    std::erase_if(imports, [](const Import& import) { return WhySpared(import) != nullptr; });
    run.Figures(L"refused calls of %zu imports; %zu are spared", imports.size(), all - imports.size());

    // In brief only memory is refused to whole sheets and to the installer's actions.
    std::vector<Target> targets;
    for (const Import& import : imports) {
        targets.push_back({import.function, Target::What::kEachOperation});
        if (!run.Brief() || import.function == "malloc") {
            targets.push_back({import.function, Target::What::kWholeSheet});
            targets.push_back({import.function, Target::What::kInstalling});
        }
    }
    // An installation leaves its last printer open on purpose.
    const auto counted = std::stable_partition(targets.begin(), targets.end(), [](const Target& target) {
        return target.what == Target::What::kInstalling || LeavesSomethingBehind(target.function);
    });

    std::map<std::string, LONG64> calls[std::size(kOperations)];
    for (size_t operation = 0; operation < std::size(kOperations); ++operation)
        calls[operation] = CountCalls(run, kOperations[operation], imports);
    WarmUpSheets();
    for (run.Begin(static_cast<LONG64>(targets.size()), counted - targets.begin()); run.Next();) {
        const Target& target = targets[static_cast<size_t>(run.Iteration())];
        const int some = static_cast<int>(target.function == "malloc" ? run.Either(40, 2) : 4);
        if (target.what == Target::What::kWholeSheet) {
            RefuseSomeCalls(run, target.function, some);
            continue;
        }
        if (target.what == Target::What::kInstalling) {
            RefuseInstalling(run, target.function, some);
            continue;
        }
        for (size_t operation = 0; operation < std::size(kOperations); ++operation) {
            const LONG64 most = std::min(calls[operation][target.function], run.Either(60, 2));
            for (LONG64 call = 1; call <= most; ++call)
                Refuse(run, kOperations[operation], target.function, call);
        }
    }
}

}  // namespace stress

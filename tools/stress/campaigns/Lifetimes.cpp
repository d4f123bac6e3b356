// The plug-in loaded, created, used, released and unloaded, over and over.
#include "driverkit/printoem.h"
#include "tools/driverhost/PlugIn.h"
#include "tools/stress/Campaigns.h"
#include "tools/stress/World.h"

namespace stress {

namespace {

constexpr LONG64 kCyclesPerIteration = 100;

void Use(Run& run, IPrintOemUI2* object, HMODULE module) {
    OEMDMPARAM size = {};
    size.cbSize = sizeof size;
    run.Expect(object->DevMode(OEMDM_SIZE, &size) == S_OK && size.cbBufSize == 560, L"no size");

    driverhost::DriverTree tree = driverhost::DriverTree::Standard(L"KZP Output");
    wchar_t printer[] = L"A printer whose name does not fit where short texts are kept";
    OEMCUIPPARAM param = {};
    param.cbSize = sizeof param;
    param.pPrinterName = printer;
    param.hModule = module;
    param.hOEMHeap = HeapCreate(0, 0, 0);
    param.pDrvOptItems = tree.Items();
    param.cDrvOptItems = tree.Count();
    run.Expect(object->CommonUIProp(OEMCUIP_DOCPROP, &param) == S_OK && param.OEMCUIPCallback,
               L"no callback");

    PROPSHEETUI_INFO info = {};
    info.cbSize = sizeof info;
    info.Version = PROPSHEETUI_INFO_VERSION;
    info.pfnComPropSheet = TakeEverything;
    run.Expect(object->DocumentPropertySheets(&info, 0) == S_OK && info.Result == 1, L"no pages");

    INT answer = 0;
    run.Expect(object->DocumentEvent(nullptr, nullptr, DOCUMENTEVENT_QUERYFILTER, 0, nullptr, 0, nullptr,
                                     &answer) == S_OK,
               L"no document events");
    HeapDestroy(param.hOEMHeap);
}

}  // namespace

void Lifetimes(Run& run) {
    const kzp::test::ScratchRegistry registry;
    const std::wstring path = driverhost::BesideProgram(L"KZPWriterUI.dll");
    for (run.Begin(run.Either(100, 2), 1); run.Next();) {
        for (LONG64 cycle = 0; cycle < run.Either(kCyclesPerIteration, 50); ++cycle) {
            run.Doing(L"cycle %lld", cycle);
            {
                const driverhost::PlugIn plugIn(path);
                const auto object = plugIn.CreateObject();
                Use(run, object.Get(), plugIn.Module());
            }
            run.Tried();
        }
        run.Expect(!GetModuleHandleW(L"KZPWriterUI.dll"), L"the plug-in stays loaded");
    }
}

}  // namespace stress

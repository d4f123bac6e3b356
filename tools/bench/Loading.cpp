// A program that prints loads the plug-in whenever it asks for the printer's settings. Beside it stands a DLL
// with the same entry points and nothing behind them.
#include <windows.h>

#include <stdexcept>
#include <string>

#include "support/UniqueHandle.h"
#include "tests/support/Files.h"
#include "tests/support/PlugInDll.h"
#include "tools/bench/Chapters.h"
#include "tools/bench/ShownWindow.h"

namespace kzp::bench {

namespace {

constexpr double kLimit = 1.25;
constexpr size_t kRounds = 150;

void LoadCreateRelease() {
    const test::PlugInDll dll;
    IPrintOemUI2* const object = dll.Create();
    if (!object)
        throw std::runtime_error("the plug-in serves no object");
    object->Release();
}

void LoadEmpty(const std::wstring& path) {
    const UniqueModule module(LoadLibraryW(path.c_str()));
    if (!module || !GetProcAddress(module.Get(), "DllGetClassObject"))
        throw std::runtime_error("empty.dll does not load");
}

}  // namespace

void MeasureLoading(Report& report) {
    report.Explain(
        "Load, create the object, release it and unload, beside loading and unloading a DLL without content; "
        "in a process that already shows a window.");
    report.Columns("plug-in", "empty DLL");
    const ShownWindow window;
    const std::wstring empty = test::BesideExe(L"empty.dll");
    report.Add("load, create, release, unload",
               Compare(kRounds, kLimit, LoadCreateRelease, [&] { LoadEmpty(empty); }, [] {}), kLimit);
    const test::PlugInDll loaded;
    report.Add("the same while it is loaded already",
               Compare(kRounds, kLimit, LoadCreateRelease, [&] { LoadEmpty(empty); }, [] {}));
}

}  // namespace kzp::bench

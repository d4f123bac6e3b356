#include <algorithm>
#include <cstring>
#include <string>

#include "tests/support/Files.h"
#include "tools/bench/Chapters.h"
#include "tools/bench/LinkMap.h"
#include "tools/bench/PeImage.h"

namespace kzp::bench {

namespace {

constexpr double kPlugInLimit = 160;    // KB
constexpr double kResourcesLimit = 16;  // KB
constexpr size_t kLargestSymbols = 12;

// What every program that prints has in memory anyway.
constexpr const char* kUsualDlls[] = {"KERNEL32.dll", "msvcrt.dll",   "USER32.dll",
                                      "GDI32.dll",    "ADVAPI32.dll", "WINSPOOL.DRV"};

// One: the texts of the sheet's state are given back when the DLL goes.
constexpr double kInitialisers = 1;

double Kilobytes(size_t bytes) {
    return static_cast<double>(bytes) / 1024;
}

bool IsUsual(const PeImport& import) {
    return std::any_of(std::begin(kUsualDlls), std::end(kUsualDlls),
                       [&](const char* usual) { return _stricmp(import.dll.c_str(), usual) == 0; });
}

}  // namespace

void MeasureFootprint(Report& report) {
    report.Explain(
        "Sizes of the delivered files, by section, by origin and by symbol (from the linker's map); the DLLs "
        "that are loaded together with the plug-in; and the initialisers that run when it is loaded.");
    report.Columns("size", "");
    const PeImage plugIn = ReadPeImage(test::BesideExe(L"KZPWriterUI.dll"));
    const PeImage resources = ReadPeImage(test::BesideExe(L"KZPWriterRes.dll"));
    const LinkMap map = ReadLinkMap(report.LinkMapPath());

    report.Add("KZPWriterUI.dll", Kilobytes(plugIn.fileBytes), "KB", kPlugInLimit);
    report.Add("KZPWriterRes.dll", Kilobytes(resources.fileBytes), "KB", kResourcesLimit);
    for (const PeSection& section : plugIn.sections)
        report.Add("section " + section.name, section.memoryBytes, "bytes");
    for (const LinkedPart& origin : map.origins)
        report.Add("from " + origin.name, static_cast<double>(origin.bytes), "bytes");
    for (size_t index = 0; index < std::min(kLargestSymbols, map.symbols.size()); ++index)
        report.Add(map.symbols[index].name, static_cast<double>(map.symbols[index].bytes), "bytes");

    double others = 0;
    for (const PeImport& import : plugIn.imports) {
        report.Add("imported from " + import.dll, static_cast<double>(import.functions), "functions");
        others += IsUsual(import) ? 0 : 1;
    }
    report.AddCount("further DLLs loaded with it", others, 0);

    std::string who;
    for (const std::string& object : map.initialisers)
        who += (who.empty() ? " (" : ", ") + object.substr(0, object.find('.'));
    report.AddCount("initialisers" + who + (who.empty() ? "" : ")"),
                    static_cast<double>(map.initialisers.size()), kInitialisers);
}

}  // namespace kzp::bench

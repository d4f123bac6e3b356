// bench [-o FOLDER] [-m LINK_MAP] [CHAPTER...]: runs the chapters (all of them without a name), prints a
// table and writes bench.md and bench.svg. The exit status is 1 when a figure is over its limit, 2 when the
// call was wrong.
#include <windows.h>

#include <cstdio>
#include <cstring>
#include <exception>
#include <fstream>
#include <string>
#include <vector>

#include "tools/bench/Chapters.h"

namespace {

struct Chapter {
    const char* name;
    const char* title;
    void (*run)(kzp::bench::Report&);
};

constexpr Chapter kChapters[] = {
    {"footprint", "Footprint", kzp::bench::MeasureFootprint},
    {"loading", "Loading", kzp::bench::MeasureLoading},
    {"devmode", "DevMode", kzp::bench::MeasureDevMode},
    {"events", "Document events", kzp::bench::MeasureDocumentEvents},
    {"pages", "Opening the two pages", kzp::bench::MeasurePages},
    {"fonts", "The font list", kzp::bench::MeasureFonts},
};

bool IsWanted(const Chapter& chapter, const std::vector<std::string>& wanted) {
    if (wanted.empty())
        return true;
    for (const std::string& name : wanted) {
        if (name == chapter.name)
            return true;
    }
    return false;
}

}  // namespace

int main(int count, char** arguments) {
    std::string folder = ".", linkMap = "KZPWriterUI.map";
    std::vector<std::string> wanted;
    for (int i = 1; i < count; ++i) {
        if (std::strcmp(arguments[i], "-o") == 0 && i + 1 < count)
            folder = arguments[++i];
        else if (std::strcmp(arguments[i], "-m") == 0 && i + 1 < count)
            linkMap = arguments[++i];
        else
            wanted.push_back(arguments[i]);
    }

    kzp::bench::Report report(linkMap);
    size_t run = 0;
    try {
        for (const Chapter& chapter : kChapters) {
            if (!IsWanted(chapter, wanted))
                continue;
            report.BeginChapter(chapter.title);
            std::fprintf(stderr, "   %s\n", chapter.title);
            chapter.run(report);
            ++run;
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench: %s\n", error.what());
        return 2;
    }
    if (run == 0 || run < wanted.size()) {
        std::fputs("usage: bench [-o FOLDER] [-m LINK_MAP] [CHAPTER...]; chapters:", stderr);
        for (const Chapter& chapter : kChapters)
            std::fprintf(stderr, " %s", chapter.name);
        std::fputs("\n", stderr);
        return 2;
    }
    report.Print();
    std::ofstream(folder + "/bench.md") << report.Markdown();
    std::ofstream(folder + "/bench.svg") << report.Svg();
    return report.WithinLimits() ? 0 : 1;
}

// bench: what the plug-in costs in time, chapter by chapter, as Markdown. The exit status is 1 when a figure
// is over its limit, 2 when nothing could be measured.
#include <cstdio>

#include "support/UniqueHandle.h"
#include "tools/bench/Bench.h"

namespace kzp::bench {

namespace {

constexpr double kLoadingLimit = 1.25;
constexpr size_t kLoadingRounds = 150;

bool g_over = false;

std::string Duration(double microseconds) {
    char text[32];
    const bool isLong = microseconds >= 10'000;
    _snprintf(text, sizeof text,
              microseconds < 1     ? "%.4f %s"
              : microseconds < 100 ? "%.2f %s"
                                   : "%.0f %s",
              isLong ? microseconds / 1000 : microseconds, isLong ? "ms" : "us");
    return text;
}

std::string Ratio(double value) {
    char text[32];
    _snprintf(text, sizeof text, "%.3f", value);
    return text;
}

void LoadCreateRelease() {
    (void)driverhost::PlugIn().CreateObject();
}

}  // namespace

void BeginChapter(const char* title, const char* explanation, const char* ours, const char* bare) {
    std::printf("\n## %s\n\n%s\n\n| | %s | %s | ratio | limit | |\n|---|---:|---:|---:|---:|---|\n", title,
                explanation, ours, bare);
}

void Report(const char* what, double ours, double limit, double bare, double ratio) {
    const bool isRatio = ratio != 0;
    const bool over = limit != 0 && (isRatio ? ratio : ours) > limit;
    const std::string limitText = limit == 0 ? "" : isRatio ? Ratio(limit) : Duration(limit);
    std::printf("| %s | %s | %s | %s | %s | %s |\n", what, Duration(ours).c_str(),
                isRatio ? Duration(bare).c_str() : "", isRatio ? Ratio(ratio).c_str() : "", limitText.c_str(),
                limit == 0 ? ""
                : over     ? "OVER"
                           : "within");
    std::fflush(stdout);
    g_over = g_over || over;
}

void MeasureLoading() {
    BeginChapter("Loading",
                 "Load, create the object, release it and unload, beside loading and unloading a DLL with "
                 "the same entry points and nothing behind them; in a process that already shows a window.",
                 "plug-in", "empty DLL");
    const ShownWindow window;
    const std::wstring path = test::BesideExe(L"empty.dll");
    const auto loadEmpty = [&] {
        const UniqueModule module(LoadLibraryW(path.c_str()));
        Require(module && GetProcAddress(module.Get(), "DllGetClassObject"), "empty.dll does not load");
    };
    Compare("load, create, release, unload", kLoadingRounds, kLoadingLimit, LoadCreateRelease, loadEmpty);
    const driverhost::PlugIn loaded;
    Compare("the same while it is loaded already", kLoadingRounds, 0, LoadCreateRelease, loadEmpty);
}

}  // namespace kzp::bench

int main(int count, char** names) {
    using namespace kzp::bench;
    const struct {
        std::string name;
        void (*measure)();
    } chapters[] = {{"loading", MeasureLoading},
                    {"devmode", MeasureDevMode},
                    {"events", MeasureDocumentEvents},
                    {"pages", MeasurePages},
                    {"fonts", MeasureFonts}};
    try {
        for (const auto& chapter : chapters) {
            if (count == 1 || std::find(names + 1, names + count, chapter.name) != names + count)
                chapter.measure();
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench: %s\n", error.what());
        return 2;
    }
    return g_over ? 1 : 0;
}

// Two ways of doing the same thing, timed side by side, and the lines that say what came out.
#pragma once

#include <windows.h>

#include <algorithm>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/support/Files.h"
#include "tests/support/HostedSheet.h"
#include "tools/driverhost/PlugIn.h"
#include "tools/standins/common/ScratchRegistry.h"

namespace kzp::bench {

// The chapters, each with what it prints: a heading, a sentence, and a row of a Markdown table for each
// figure.
void MeasureLoading();
void MeasureDevMode();
void MeasureDocumentEvents();
void MeasurePages();
void MeasureFonts();

void BeginChapter(const char* title, const char* explanation, const char* ours, const char* bare);

inline double Median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

// Microseconds that `work` takes.
inline double Time(const std::function<void()>& work) {
    LARGE_INTEGER frequency, before, after;
    QueryPerformanceFrequency(&frequency);
    QueryPerformanceCounter(&before);
    work();
    QueryPerformanceCounter(&after);
    return 1e6 * static_cast<double>(after.QuadPart - before.QuadPart) /
           static_cast<double>(frequency.QuadPart);
}

// Medians, in microseconds; what drifts during the run does not show in the ratio, the median of the rounds'
// own. `limit` is the largest ratio (of a single figure: the largest number of microseconds) that is still
// right, 0 when there is none.
void Report(const char* what, double ours, double limit, double bare = 0, double ratio = 0);

// Times both twice in every round, in the order ours-bare-bare-ours and the other way round in turn;
// `prepare` (told whether for ours) and `finish` run untimed around each. A result above `limit` is not
// believed at once: it must stand after four times as many rounds, for on a busy machine few rounds say
// little.
inline void Compare(
    const char* what, size_t rounds, double limit, const std::function<void()>& ours,
    const std::function<void()>& bare, const std::function<void()>& finish = [] {},
    const std::function<void(bool isOurs)>& prepare = [](bool) {}) {
    std::vector<double> ourTimes, bareTimes, ratios;
    const auto time = [&](bool isOurs) {
        std::vector<double>& times = isOurs ? ourTimes : bareTimes;
        prepare(isOurs);
        times.push_back(Time(isOurs ? ours : bare));
        finish();
        return times.back();
    };
    time(true);  // first calls load and cache what later ones find
    time(false);
    while (ratios.size() < rounds || (limit != 0 && ratios.size() < 4 * rounds && Median(ratios) > limit)) {
        const bool oursFirst = ratios.size() % 2 == 0;
        double sums[2] = {};
        for (const bool isOurs : {oursFirst, !oursFirst, !oursFirst, oursFirst})
            sums[isOurs] += time(isOurs);
        ratios.push_back(sums[true] / sums[false]);
    }
    Report(what, Median(ourTimes), limit, Median(bareTimes), Median(ratios));
}

inline void Require(bool truth, const char* complaint) {
    if (!truth)
        throw std::runtime_error(complaint);
}

inline void HandlePendingMessages() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

// What a program with a user interface has before a plug-in comes: a window on the screen.
struct ShownWindow : driverhost::UniqueWindow {
    ShownWindow()
        : UniqueHandle(CreateWindowExW(0, L"STATIC", L"Application", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 20, 20,
                                       600, 480, nullptr, nullptr, nullptr, nullptr)) {
        HandlePendingMessages();
    }
};

}  // namespace kzp::bench

// Two ways of doing the same thing, timed side by side, and the lines that say what came out.
#pragma once

#include <windows.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/support/Files.h"
#include "tests/support/PlugInDll.h"
#include "tests/support/ScratchRegistry.h"

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
    if (values.empty())
        return 0;
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

// Microseconds that `work` takes.
template <class Work>
double Time(Work&& work) {
    LARGE_INTEGER frequency, before, after;
    QueryPerformanceFrequency(&frequency);
    QueryPerformanceCounter(&before);
    work();
    QueryPerformanceCounter(&after);
    return 1e6 * static_cast<double>(after.QuadPart - before.QuadPart) /
           static_cast<double>(frequency.QuadPart);
}

// Medians, in microseconds; what drifts during the run does not show in the ratio, the median of the rounds'
// own.
struct Comparison {
    double ours;
    double bare;
    double ratio;
};

// `limit` is the largest ratio (of a single figure: the largest number of microseconds) that is still right,
// 0 when there is none.
void Report(const char* what, const Comparison& comparison, double limit);
void Report(const char* what, double microseconds, double limit);

// Times both twice in every round, in the order ours-bare-bare-ours and the other way round in turn;
// `between` runs untimed after each. A result above `limit` is not believed at once: it must stand after four
// times as many rounds, for on a busy machine few rounds say little.
template <class Ours, class Bare, class Between>
void Compare(const char* what, size_t rounds, double limit, Ours&& ours, Bare&& bare, Between&& between) {
    std::vector<double> ourTimes, bareTimes, ratios;
    const auto time = [&](auto& work, std::vector<double>& times) {
        times.push_back(Time(work));
        between();
        return times.back();
    };
    time(ours, ratios);  // first calls load and cache what later ones find
    time(bare, ratios);
    ratios.clear();
    while (ratios.size() < rounds || (limit != 0 && ratios.size() < 4 * rounds && Median(ratios) > limit)) {
        const bool oursFirst = ratios.size() % 2 == 0;
        double ourSum = 0, bareSum = 0;
        for (const bool isOurs : {oursFirst, !oursFirst, !oursFirst, oursFirst})
            (isOurs ? ourSum : bareSum) += isOurs ? time(ours, ourTimes) : time(bare, bareTimes);
        ratios.push_back(ourSum / bareSum);
    }
    Report(what, {Median(ourTimes), Median(bareTimes), Median(ratios)}, limit);
}

inline void Nothing() {}

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
class ShownWindow {
  public:
    ShownWindow()
        : m_window(CreateWindowExW(0, L"STATIC", L"Application", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 20, 20,
                                   600, 480, nullptr, nullptr, nullptr, nullptr)) {
        HandlePendingMessages();
    }
    ~ShownWindow() {
        DestroyWindow(m_window);
        HandlePendingMessages();
    }
    ShownWindow(const ShownWindow&) = delete;
    ShownWindow& operator=(const ShownWindow&) = delete;

    HWND Get() const { return m_window; }

  private:
    HWND m_window;
};

}  // namespace kzp::bench

// What the chapters found: a table for people, a Markdown file and a plot.
#pragma once

#include <string>
#include <vector>

#include "tools/bench/Stopwatch.h"

namespace kzp::bench {

class Report {
  public:
    void BeginChapter(const std::string& title);

    // One sentence below the chapter's title: what is measured against what.
    void Explain(const std::string& text);

    // Measured side by side; `limit` is the ratio that is still right.
    void Add(const std::string& what, const Comparison& comparison, double limit);

    // A single figure; `limit` is the largest that is still right, 0 when there is none.
    void Add(const std::string& what, double value, const std::string& unit, double limit);

    void Print() const;
    bool WithinLimits() const;
    std::string Markdown() const;

    // Every figure that has a limit, as its share of what is allowed.
    std::string Svg() const;

  private:
    struct Row {
        std::string what, figure, reference, result, limit;
        double share;  // of the limit; 0 when there is none
    };
    struct Chapter {
        std::string title;
        std::string explanation;
        std::vector<Row> rows;
    };

    std::vector<Chapter> m_chapters;
};

}  // namespace kzp::bench

// What the chapters found: a table for people, a Markdown file and a plot.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "tools/bench/Stopwatch.h"

namespace kzp::bench {

class Report {
  public:
    // `linkMapPath`: the linker's map of the plug-in, for the chapter that asks for it.
    explicit Report(std::string linkMapPath) : m_linkMapPath(std::move(linkMapPath)) {}
    const std::string& LinkMapPath() const { return m_linkMapPath; }

    void BeginChapter(const std::string& title);

    // One sentence below the chapter's title: what is measured against what.
    void Explain(const std::string& text);

    // What stands in the two columns of figures; otherwise the plug-in and its bare calls.
    void Columns(const std::string& figure, const std::string& reference);

    // Measured side by side; `limit` is the largest ratio that is still right, 0 when there is none.
    void Add(const std::string& what, const Comparison& comparison, double limit = 0);

    // A single figure; `limit` is the largest that is still right, 0 when there is none.
    void Add(const std::string& what, double value, const std::string& unit, double limit = 0);

    // A number of things, of which `limit` are still right.
    void AddCount(const std::string& what, double value, double limit);

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
        std::string figureColumn = "plug-in";
        std::string referenceColumn = "bare calls";
        std::vector<Row> rows;
    };

    std::string m_linkMapPath;
    std::vector<Chapter> m_chapters;
};

}  // namespace kzp::bench

#include "tools/bench/Report.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace kzp::bench {

namespace {

[[gnu::format(__MINGW_PRINTF_FORMAT, 1, 2)]] std::string Format(const char* format, ...) {
    char text[512];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    return text;
}

// At least three significant digits, never an exponent.
std::string Number(double value) {
    const int decimals = value == static_cast<double>(static_cast<long long>(value)) ? 0
                         : value < 1                                                 ? 4
                         : value < 10                                                ? 2
                         : value < 100                                               ? 1
                                                                                     : 0;
    return Format("%.*f", decimals, value);
}

// Symbols in a Markdown table: their angle brackets and bars are text.
std::string Escaped(const std::string& text) {
    std::string result;
    for (const char character : text) {
        if (std::strchr("<>|*_", character))
            result += '\\';
        result += character;
    }
    return result;
}

std::string Duration(double microseconds) {
    return microseconds < 10'000 ? Number(microseconds) + " us" : Number(microseconds / 1000) + " ms";
}

const char* Verdict(double share) {
    return share == 0 ? "" : share <= 1 ? "within" : "OVER";
}

}  // namespace

void Report::BeginChapter(const std::string& title) {
    m_chapters.emplace_back().title = title;
}

void Report::Explain(const std::string& text) {
    m_chapters.back().explanation = text;
}

void Report::Columns(const std::string& figure, const std::string& reference) {
    m_chapters.back().figureColumn = figure;
    m_chapters.back().referenceColumn = reference;
}

void Report::Add(const std::string& what, const Comparison& comparison, double limit) {
    m_chapters.back().rows.push_back(
        {what, Duration(comparison.ours), Duration(comparison.bare), Format("%.3f", comparison.ratio),
         limit != 0 ? Format("%.2f", limit) : "", limit != 0 ? comparison.ratio / limit : 0});
}

void Report::Add(const std::string& what, double value, const std::string& unit, double limit) {
    m_chapters.back().rows.push_back({what, Number(value) + " " + unit, "", "",
                                      limit != 0 ? Number(limit) + " " + unit : "",
                                      limit != 0 ? value / limit : 0});
}

void Report::AddCount(const std::string& what, double value, double limit) {
    // Where none is allowed, none shows as a sliver and one is too many.
    const double share = limit != 0 ? value / limit : value == 0 ? 0.01 : 2;
    m_chapters.back().rows.push_back({what, Number(value), "", "", Number(limit), share});
}

void Report::Print() const {
    for (const Chapter& chapter : m_chapters) {
        std::printf("\n%s\n", chapter.title.c_str());
        std::printf("   %-52s %14s %14s %8s %14s\n", "", chapter.figureColumn.c_str(),
                    chapter.referenceColumn.c_str(), "ratio", "limit");
        for (const Row& row : chapter.rows)
            std::printf("   %-52.52s %14s %14s %8s %14s  %s\n", row.what.c_str(), row.figure.c_str(),
                        row.reference.c_str(), row.result.c_str(), row.limit.c_str(), Verdict(row.share));
    }
}

bool Report::WithinLimits() const {
    for (const Chapter& chapter : m_chapters) {
        for (const Row& row : chapter.rows) {
            if (row.share > 1)
                return false;
        }
    }
    return true;
}

std::string Report::Markdown() const {
    std::string text = "# What the plug-in costs\n\n![Shares of what is allowed](bench.svg)\n";
    for (const Chapter& chapter : m_chapters) {
        text += "\n## " + chapter.title + "\n\n" + chapter.explanation + "\n\n";
        text += "| | " + chapter.figureColumn + " | " + chapter.referenceColumn +
                " | ratio | limit | |\n|---|---:|---:|---:|---:|---|\n";
        for (const Row& row : chapter.rows)
            text += "| " + Escaped(row.what) + " | " + row.figure + " | " + row.reference + " | " +
                    row.result + " | " + row.limit + " | " + Verdict(row.share) + " |\n";
    }
    return text;
}

std::string Report::Svg() const {
    constexpr int kLabelWidth = 380, kUnit = 260, kRowHeight = 24, kWidth = 860, kTop = 54;
    std::string bars;
    int y = kTop;
    const auto heading = [&](const std::string& title) {
        bars += Format("<text x=\"10\" y=\"%d\" font-weight=\"bold\">%s</text>\n", y + 15, title.c_str());
        y += kRowHeight;
    };
    for (const Chapter& chapter : m_chapters) {
        heading(chapter.title);
        for (const Row& row : chapter.rows) {
            if (row.share == 0)
                continue;
            const double length = std::min(row.share, 1.5) * kUnit;
            bars += Format("<text x=\"%d\" y=\"%d\" text-anchor=\"end\">%s</text>", kLabelWidth - 8, y + 15,
                           row.what.c_str());
            bars += Format("<rect x=\"%d\" y=\"%d\" width=\"%.1f\" height=\"16\" fill=\"%s\"/>", kLabelWidth,
                           y + 3, length, row.share <= 1 ? "#3a7d5c" : "#b3382c");
            bars += Format("<text x=\"%.1f\" y=\"%d\">%s of %s</text>\n", kLabelWidth + length + 6, y + 15,
                           (row.result.empty() ? row.figure : row.result).c_str(), row.limit.c_str());
            y += kRowHeight;
        }
    }
    return Format(
               "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"%d\" height=\"%d\" "
               "font-family=\"sans-serif\" font-size=\"13\">\n<rect width=\"100%%\" height=\"100%%\" "
               "fill=\"white\"/>\n<text x=\"10\" y=\"26\" font-size=\"17\">Costs as shares of what is "
               "allowed</text>\n",
               kWidth, y + 12) +
           bars +
           Format(
               "<line x1=\"%d\" x2=\"%d\" y1=\"%d\" y2=\"%d\" stroke=\"#333\" stroke-dasharray=\"4 3\"/>"
               "<text x=\"%d\" y=\"%d\" text-anchor=\"middle\">limit</text>\n</svg>\n",
               kLabelWidth + kUnit, kLabelWidth + kUnit, kTop - 6, y, kLabelWidth + kUnit, kTop - 10);
}

}  // namespace kzp::bench

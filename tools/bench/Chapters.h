// The chapters of the benchmark: one file each, named here once and listed in main.cpp.
#pragma once

#include "tools/bench/Report.h"

namespace kzp::bench {

// What the two files hold and import, and what runs when the plug-in is loaded.
void MeasureFootprint(Report& report);

// Loading, one object, unloading.
void MeasureLoading(Report& report);

// DevMode and its gate, in both forms.
void MeasureDevMode(Report& report);

// A start of a document, and the events on which nothing is done.
void MeasureDocumentEvents(Report& report);

// Opening the two pages.
void MeasurePages(Report& report);

// The fonts dialog with a few and with very many fonts.
void MeasureFonts(Report& report);

}  // namespace kzp::bench

// The chapters of the benchmark: one file each, named here once and listed in main.cpp.
#pragma once

#include "tools/bench/Report.h"

namespace kzp::bench {

// A start of a document, and the events on which nothing is done.
void MeasureDocumentEvents(Report& report);

}  // namespace kzp::bench

// The command line of the program.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "tools/driverhost/HostSheet.h"

namespace driverhost {

struct Options {
    std::wstring command = L"sheet";  // sheet, state, print or help
    std::wstring dll;
    std::wstring outFolder = L"out";
    std::vector<std::wstring> script;  // lines; empty: the sheet is left to the person
    bool createPrinter = false;
    bool diff = false;
    bool quiet = false;  // no event lines
    SessionOptions session;
    SheetOptions sheet;
};

// HostError for what cannot be understood; a script file is read here.
Options ParseOptions(const std::vector<std::wstring>& arguments);

std::wstring HelpText();

}  // namespace driverhost

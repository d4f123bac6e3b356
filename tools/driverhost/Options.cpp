#include "tools/driverhost/Options.h"

#include <algorithm>
#include <fstream>
#include <functional>
#include <map>

#include "tools/driverhost/Script.h"
#include "tools/driverhost/Text.h"

namespace driverhost {

namespace {

constexpr std::wstring_view kCommands[] = {L"sheet", L"state", L"print", L"help"};

constexpr wchar_t kHead[] =
    LR"(driverhost [OPTION...] [COMMAND [LINE...]]

Stands for the printer driver's user interface and shows what the plug-in does in it: loads the
plug-in by path, creates its object, and calls it as the driver kit's contract says.

Commands
  sheet [LINE...]  shows the document's property sheet (the default). Without script lines it is
                   yours; with them they are played as a person would use the sheet, boxes are
                   answered, and a sheet left open is cancelled.
  state            prints device mode, settings, printer data, form and items
  print            plays an application that prints one document
  help             this text

Options
  --dll PATH        the plug-in (default: KZPWriterUI.dll beside this program)
  --printer NAME    the printer (default: "Brimlake KZP Writer for 2D")
  --create-printer  adds the printer and its driver entry first, if missing
  --script FILE     script lines from a file (UTF-8)
  --out FOLDER      where pictures go (default: out)
  --diff            prints as a table what the sheet changed
  --quiet           does not print the events between sheet and plug-in
  --shape NAME      another driver than the usual one: four-tabs (two pages of its own in front), no-apply
                    (no Apply button), no-helper (its helper object refuses its interface), plug-in-item (an
                    item of the plug-in, although it asks for none), few-items (two driver items)
  --printer-properties  the printer's own sheet instead of a document's

Exit status: 0 done, 1 a step or call failed, 2 the command line is wrong.

Script lines: one command each, words in double quotes keep blanks, # begins a remark. A control
is named by its id; it must be visible and enabled to be used.
)";

std::vector<std::wstring> ReadLines(const std::filesystem::path& path) {
    std::ifstream file(path);
    if (!file)
        throw HostError{L"cannot read " + path.wstring()};
    std::vector<std::wstring> lines;
    for (std::string line; std::getline(file, line);)
        lines.push_back(FromUtf8(line));
    return lines;
}

}  // namespace

std::wstring HelpText() {
    return kHead + Script::Help();
}

Options ParseOptions(const std::vector<std::wstring>& arguments) {
    Options options;
    options.dll = BesideProgram(L"KZPWriterUI.dll");
    const std::map<std::wstring, std::function<void()>> switches = {
        {L"--help", [&] { options.command = L"help"; }},
        {L"--create-printer", [&] { options.createPrinter = true; }},
        {L"--diff", [&] { options.diff = true; }},
        {L"--quiet", [&] { options.quiet = true; }},
        {L"--printer-properties", [&] { options.session.mode = OEMCUIP_PRNPROP; }},
        {L"--shape four-tabs", [&] { options.sheet.extraFirstPage = true; }},
        {L"--shape no-apply", [&] { options.sheet.applyButton = false; }},
        {L"--shape no-helper", [&] { options.session.offersHelper = false; }},
        {L"--shape plug-in-item", [&] { options.session.plugInItem = true; }},
        {L"--shape few-items", [&] { options.session.firstItems = 2; }},
    };
    const std::map<std::wstring, std::function<void(const std::wstring&)>> values = {
        {L"--dll", [&](auto& path) { options.dll = path; }},
        {L"--printer", [&](auto& name) { options.session.printer = name; }},
        {L"--script", [&](auto& path) { options.script = ReadLines(path); }},
        {L"--out", [&](auto& folder) { options.outFolder = folder; }},
    };
    std::vector<std::wstring> words;
    for (auto argument = arguments.begin(); argument != arguments.end(); ++argument) {
        const bool isLast = argument + 1 == arguments.end();
        std::wstring option = *argument;
        if (option == L"--shape" && !isLast)
            option += L" " + *++argument;
        if (const auto known = switches.find(option); known != switches.end())
            known->second();
        else if (const auto named = values.find(option); named != values.end() && !isLast)
            named->second(*++argument);
        else if (option.starts_with(L"--"))
            throw HostError{L"unknown option, or without its value: " + option};
        else
            words.push_back(option);
    }
    if (!words.empty() && options.command != L"help") {
        options.command = words[0];
        options.script.insert(options.script.end(), words.begin() + 1, words.end());
        if (std::ranges::find(kCommands, words[0]) == std::end(kCommands))
            throw HostError{L"unknown command " + words[0]};
    }
    for (const std::wstring& line : options.script)
        Script::Check(line);
    return options;
}

}  // namespace driverhost

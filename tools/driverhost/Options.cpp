#include "tools/driverhost/Options.h"

#include <algorithm>
#include <cstdio>
#include <functional>
#include <map>

#include "tools/driverhost/DocumentSession.h"
#include "tools/driverhost/Script.h"
#include "tools/driverhost/Text.h"

namespace driverhost {

namespace {

constexpr wchar_t kHead[] =
    LR"(driverhost [OPTION...] [COMMAND [LINE...]]

Stands for the printer driver's user interface and shows what the plug-in does in it: loads the
plug-in by path, creates its object, and calls it as the driver kit's contract says.

Commands
  sheet [LINE...]  shows the document's property sheet (the default). Without script lines it is
                   yours; with them they are played as a person would use the sheet, boxes are
                   answered, and a sheet left open is cancelled.
  devmode          runs the four device-mode operations and prints the record
  state            prints device mode, settings, printer data and form
  print            plays an application that prints one document
  help             this text

Options
  --dll PATH        the plug-in (default: KZPWriterUI.dll beside this program)
  --printer NAME    the printer (default: "Brimlake KZP Writer for 2D")
  --create-printer  adds the printer and its driver entry first, if missing
  --script FILE     script lines from a file (UTF-8), "-" for the standard input
  --out FOLDER      where pictures go (default: out)
  --diff            prints as a table what the sheet changed
  --quiet           does not print the events between sheet and plug-in
  --timeout SECONDS ends a scripted run that hangs (default: 120)
  --wait MS         how long "print" looks for companion programs (default: 1000)
  --shape NAME      another driver than the usual one: four-tabs (two pages of its own in front), no-apply
                    (no Apply button), no-helper (its helper object refuses its interface), plug-in-item (an
                    item of the plug-in, although it asks for none), few-items (two driver items)
  --printer-properties  the printer's own sheet instead of a document's

Exit status: 0 done, 1 a step or call failed, 2 the command line is wrong, 3 a script hung.

Script lines: one command each, words in double quotes keep blanks, # begins a remark. A control
is named by its id; it must be visible and enabled to be used.
)";

constexpr wchar_t kTail[] =
    LR"(
Examples
  driverhost
  driverhost --create-printer --diff sheet shots "page 2" "select 1243 \"User Defined\"" apply ok
  driverhost --script walk.txt --out pictures
  driverhost print
)";

void TakeShape(Options& options, const std::wstring& name) {
    if (name == L"four-tabs")
        options.sheet.extraFirstPage = true;
    else if (name == L"no-apply")
        options.sheet.applyButton = false;
    else if (name == L"no-helper")
        options.session.offersHelper = false;
    else if (name == L"plug-in-item")
        options.session.plugInItem = true;
    else if (name == L"few-items")
        options.session.firstItems = 2;
    else
        throw HostError{L"there is no shape " + name};
}

std::vector<std::wstring> ReadLines(const std::wstring& path) {
    FILE* const file = path == L"-" ? stdin : _wfopen(path.c_str(), L"rb");
    if (!file)
        throw HostError{L"cannot read " + path};
    std::string text;
    char block[4096];
    for (size_t read; (read = std::fread(block, 1, sizeof block, file)) > 0;)
        text.append(block, read);
    if (file != stdin)
        std::fclose(file);
    std::vector<std::wstring> lines;
    for (size_t begin = 0; begin < text.size();) {
        const size_t end = std::min(text.find('\n', begin), text.size());
        lines.push_back(FromUtf8(std::string_view(text).substr(begin, end - begin)));
        begin = end + 1;
    }
    return lines;
}

}  // namespace

std::wstring HelpText() {
    return kHead + Script::Help() + kTail;
}

Options ParseOptions(const std::vector<std::wstring>& arguments) {
    Options options;
    options.dll = BesideProgram(L"KZPWriterUI.dll");
    size_t next = 0;
    const auto text = [&](const std::wstring& option) {
        if (next >= arguments.size())
            throw HostError{option + L" needs a value"};
        return arguments[next++];
    };
    const auto number = [&](const std::wstring& option) {
        return static_cast<DWORD>(Number(text(option), option.c_str()));
    };
    const std::map<std::wstring, std::function<void(const std::wstring&)>> known = {
        {L"--help", [&](const auto&) { options.command = L"help"; }},
        {L"--dll", [&](const auto& name) { options.dll = text(name); }},
        {L"--printer", [&](const auto& name) { options.session.printer = text(name); }},
        {L"--create-printer", [&](const auto&) { options.createPrinter = true; }},
        {L"--script", [&](const auto& name) { options.script = ReadLines(text(name)); }},
        {L"--out", [&](const auto& name) { options.outFolder = text(name); }},
        {L"--diff", [&](const auto&) { options.diff = true; }},
        {L"--quiet", [&](const auto&) { options.quiet = true; }},
        {L"--timeout", [&](const auto& name) { options.timeoutSeconds = number(name); }},
        {L"--wait", [&](const auto& name) { options.waitMilliseconds = number(name); }},
        {L"--shape", [&](const auto& name) { TakeShape(options, text(name)); }},
        {L"--printer-properties", [&](const auto&) { options.session.mode = OEMCUIP_PRNPROP; }},
    };
    std::vector<std::wstring> words;
    while (next < arguments.size()) {
        const std::wstring& argument = arguments[next++];
        if (const auto option = known.find(argument); option != known.end())
            option->second(argument);
        else if (argument.starts_with(L"--"))
            throw HostError{L"unknown option " + argument};
        else
            words.push_back(argument);
    }
    if (!words.empty() && options.command != L"help") {
        options.command = words[0];
        options.script.insert(options.script.end(), words.begin() + 1, words.end());
    }
    for (const std::wstring& line : options.script)
        Script::Check(line);
    return options;
}

}  // namespace driverhost

#include "tools/driverhost/Options.h"

#include <cstdio>

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
  --tabs 3|4        one or two pages of the driver in front (default: 3 tabs in all)
  --no-apply        a sheet without an Apply button
  --no-helper       the driver's helper object refuses its interface
  --no-plugin-item  the plug-in's own item array is empty
  --items N         the driver has only the first N of its items

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
    options.printer = kDefaultPrinter;
    size_t next = 0;
    const auto value = [&](const std::wstring& option) {
        if (next >= arguments.size())
            throw HostError{option + L" needs a value"};
        return arguments[next++];
    };
    const auto number = [&](const std::wstring& option) {
        return static_cast<DWORD>(Number(value(option), option.c_str()));
    };
    bool commandSeen = false;
    while (next < arguments.size()) {
        const std::wstring argument = arguments[next++];
        if (argument == L"--help" || argument == L"-h" || argument == L"/?")
            options.command = L"help", commandSeen = true;
        else if (argument == L"--dll")
            options.dll = value(argument);
        else if (argument == L"--printer")
            options.printer = value(argument);
        else if (argument == L"--create-printer")
            options.createPrinter = true;
        else if (argument == L"--script")
            options.script = ReadLines(value(argument));
        else if (argument == L"--out")
            options.outFolder = value(argument);
        else if (argument == L"--diff")
            options.diff = true;
        else if (argument == L"--quiet")
            options.quiet = true;
        else if (argument == L"--timeout")
            options.timeoutSeconds = number(argument);
        else if (argument == L"--wait")
            options.waitMilliseconds = number(argument);
        else if (argument == L"--tabs")
            options.fourTabs = number(argument) == 4;
        else if (argument == L"--no-apply")
            options.applyButton = false;
        else if (argument == L"--no-helper")
            options.offersHelper = false;
        else if (argument == L"--no-plugin-item")
            options.plugInItem = false;
        else if (argument == L"--items")
            options.firstItems = number(argument);
        else if (argument.starts_with(L"--"))
            throw HostError{L"unknown option " + argument};
        else if (!commandSeen)
            options.command = argument, commandSeen = true;
        else
            options.script.push_back(argument);
    }
    return options;
}

}  // namespace driverhost

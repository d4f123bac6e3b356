#include "tools/driverhost/Script.h"

#include <algorithm>
#include <cwctype>

#include "tools/driverhost/Screenshot.h"
#include "tools/driverhost/Text.h"

namespace driverhost {

namespace {

int Number(const std::wstring& text) {
    wchar_t* end = nullptr;
    const long value = std::wcstol(text.c_str(), &end, 10);
    if (text.empty() || *end)
        throw HostError{L"a number is wanted, not \"" + text + L"\""};
    return value;
}

// One of the two words; HostError for any other.
bool Either(const std::wstring& word, const wchar_t* yes, const wchar_t* no) {
    if (word != yes && word != no)
        throw HostError{Format(L"%ls or %ls is wanted, not \"%ls\"", yes, no, word.c_str())};
    return word == yes;
}

}  // namespace

const std::vector<Script::Command>& Script::Commands() {
    static const std::vector<Command> commands = {
        {L"page", L"N|TITLE", L"click a tab, by number from 1 or by its text", &Script::Page},
        {L"type", L"ID TEXT", L"type over an edit's text, one character after another",
         [](auto&, auto& user, auto& words) { user.Type(Number(words[0]), words[1]); }},
        {L"click", L"ID", L"click a button, radio button or check box",
         [](auto&, auto& user, auto& words) { user.Click(Number(words[0])); }},
        {L"select", L"ID TEXT|#N", L"pick an entry of a combo box by text, or by number from 0",
         &Script::Select},
        {L"spin", L"ID up|down [TIMES]", L"click an arrow of a spin button",
         [](auto&, auto& user, auto& words) {
             user.Spin(Number(words[0]), Either(words[1], L"up", L"down"),
                       words.size() > 2 ? Number(words[2]) : 1);
         }},
        {L"item", L"ID TEXT on|off", L"check an entry of a check list",
         [](auto&, auto& user, auto& words) {
             user.CheckItem(Number(words[0]), words[1], Either(words[2], L"on", L"off"));
         }},
        {L"box", L"NAME", L"save NAME.png of the next message box; they are all closed with OK",
         [](auto& script, auto&, auto& words) { script.m_boxShots.push_back(words[0]); }},
        {L"browse", L"FOLDER", L"how to answer the next folder browser (else Cancel)",
         [](auto& script, auto&, auto& words) { script.m_run.AnswerNextBrowser(words[0]); }},
        {L"apply", L"", L"click Apply; an error while it is disabled",
         [](auto&, auto& user, auto&) { user.Apply(); }},
        {L"ok", L"", L"click OK", [](auto&, auto& user, auto&) { user.Ok(); }},
        {L"cancel", L"", L"click Cancel", [](auto&, auto& user, auto&) { user.Cancel(); }},
        {L"shot", L"NAME [page]", L"save NAME.png of the sheet, or of its shown page", &Script::Shot},
        {L"shots", L"PREFIX", L"show every page in turn and save a picture of each", &Script::Shots},
        {L"expect", L"ID|page WHAT [TEXT]",
         L"an error unless so; WHAT: checked, unchecked, text with its TEXT; a page's number",
         &Script::Expect},
    };
    return commands;
}

// The output page changes the process's current folder; pictures go where they were meant to go at the start.
Script::Script(SheetRun& run, const std::filesystem::path& outFolder)
    : m_run(run), m_outFolder(std::filesystem::absolute(outFolder)) {
    m_run.onBox = [this](HWND box) {
        if (m_boxShots.empty())
            return;
        Save(box, m_boxShots.front());
        m_boxShots.pop_front();
    };
}

const Script::Command* Script::Parse(const std::wstring& line, Arguments& arguments) {
    if (line.starts_with(L'#'))
        return nullptr;
    arguments = Words(line);
    if (arguments.empty())
        return nullptr;
    const std::wstring name = arguments[0];
    arguments.erase(arguments.begin());
    const auto command = std::ranges::find(Commands(), name, &Command::name);
    if (command == Commands().end())
        throw HostError{L"unknown command \"" + name + L"\""};
    const Arguments known = Words(command->arguments);
    const auto most = known.size();
    const auto least =
        most - static_cast<size_t>(std::ranges::count_if(known, [](auto& word) { return word[0] == L'['; }));
    if (arguments.size() < least || arguments.size() > most)
        throw HostError{L"\"" + line + L"\" is used like this: " + name + L" " + command->arguments};
    return &*command;
}

void Script::Check(const std::wstring& line) {
    Arguments arguments;
    (void)Parse(line, arguments);
}

void Script::Add(const std::wstring& line) {
    Arguments arguments;
    const Command* const command = Parse(line, arguments);
    if (!command)
        return;
    m_run.Add([this, line, arguments, run = command->run](SheetUser& user) {
        Say(L"> " + line);
        run(*this, user, arguments);
    });
}

std::wstring Script::Help() {
    std::wstring text;
    for (const Command& command : Commands())
        text += Format(L"  %-32ls %ls\n", (command.name + L" " + command.arguments).c_str(), command.meaning);
    return text;
}

void Script::Page(Script&, SheetUser& user, const Arguments& words) {
    for (int index = 0; index < user.Sheet().PageCount(); ++index) {
        if (user.Sheet().TabText(index) == words[0])
            return user.ClickTab(index);
    }
    user.ClickTab(Number(words[0]) - 1);
}

void Script::Select(Script&, SheetUser& user, const Arguments& words) {
    if (words[1].starts_with(L'#'))
        user.SelectIndex(Number(words[0]), Number(words[1].substr(1)));
    else
        user.Select(Number(words[0]), words[1]);
}

void Script::Shot(Script& script, SheetUser& user, const Arguments& words) {
    const HostSheet& sheet = user.Sheet();
    script.Save(words.size() > 1 ? sheet.PageWindow(sheet.CurrentPage()) : sheet.Window(), words[0]);
}

void Script::Shots(Script& script, SheetUser& user, const Arguments& words) {
    std::vector<SheetStep> steps;
    for (int page = 0; page < user.Sheet().PageCount(); ++page) {
        std::wstring name =
            Format(L"%ls-%d-%ls", words[0].c_str(), page + 1, user.Sheet().TabText(page).c_str());
        for (wchar_t& letter : name)
            letter = std::iswalnum(letter) ? static_cast<wchar_t>(std::towlower(letter)) : L'-';
        steps.push_back([page](SheetUser& shown) { shown.ClickTab(page); });
        steps.push_back([&script, name](SheetUser& shown) { script.Save(shown.Sheet().Window(), name); });
    }
    script.m_run.AddNext(steps);
}

void Script::Expect(Script&, SheetUser& user, const Arguments& words) {
    std::wstring found;
    if (words[0] == L"page")
        found = std::to_wstring(user.Sheet().CurrentPage() + 1);
    else if (words[1] == L"text")
        found = user.Text(Number(words[0]));
    else
        found = user.Checked(Number(words[0])) ? L"checked" : L"unchecked";
    if (found != words.back())
        throw HostError{words[0] + L" is \"" + found + L"\", not \"" + words.back() + L"\""};
}

void Script::Save(HWND window, const std::wstring& name) {
    std::filesystem::create_directories(m_outFolder);
    const std::wstring path = m_outFolder / (name + L".png");
    SaveScreenshot(window, path);
    Say(L"saved " + path);
}

}  // namespace driverhost

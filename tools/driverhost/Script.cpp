#include "tools/driverhost/Script.h"

#include "tools/driverhost/Text.h"

namespace driverhost {

const std::vector<Script::Command>& Script::Commands() {
    static const std::vector<Command> commands = {
        {L"page", L"N|TITLE", 1, 1, L"click a tab, by number from 1 or by its text", &Script::Page},
        {L"tab", L"[back]", 0, 1, L"press Ctrl+Tab (with Shift)", &Script::Tab},
        {L"type", L"ID TEXT", 2, 2, L"type over an edit's text, one character after another", &Script::Type},
        {L"click", L"ID", 1, 1, L"click a button, radio button or check box", &Script::Click},
        {L"select", L"ID TEXT|#N", 2, 2, L"pick an entry of a combo box by text, or by number from 0",
         &Script::Select},
        {L"spin", L"ID up|down [TIMES]", 2, 3, L"click an arrow of a spin button", &Script::Spin},
        {L"item", L"ID TEXT on|off", 3, 3, L"check an entry of a check list", &Script::Item},
        {L"box", L"ok|cancel|yes|no [PNG]", 1, 2,
         L"how to answer the next message box (else OK); keep a picture", &Script::Box},
        {L"browse", L"FOLDER|cancel", 1, 1, L"how to answer the next folder browser (else Cancel)",
         &Script::Browse},
        {L"apply", L"", 0, 0, L"click Apply; an error while it is disabled", &Script::Apply},
        {L"ok", L"", 0, 0, L"click OK", &Script::Ok},
        {L"cancel", L"", 0, 0, L"click Cancel", &Script::Cancel},
        {L"shot", L"NAME [page|desktop]", 1, 2,
         L"save NAME.png of the sheet, of its shown page, or of the whole desktop", &Script::Shot},
        {L"shots", L"[PREFIX]", 0, 1, L"show every page in turn and save a picture of each", &Script::Shots},
        {L"controls", L"", 0, 0, L"list the shown page's controls", &Script::Controls},
        {L"expect", L"ID text TEXT | ID STATE | page N", 2, 3,
         L"an error unless so; STATE: checked, unchecked, visible, hidden, enabled, disabled",
         &Script::Expect},
        {L"wait", L"MILLISECONDS", 1, 1, L"let the sheet run", &Script::Wait},
    };
    return commands;
}

// The output page changes the process's current folder; pictures go where they were meant to go at the start.
Script::Script(SheetRun& run, const std::wstring& outFolder) : m_run(run) {
    wchar_t path[MAX_PATH] = {};
    const DWORD length = GetFullPathNameW(outFolder.c_str(), MAX_PATH, path, nullptr);
    m_outFolder = length > 0 && length < MAX_PATH ? path : outFolder;
    m_run.onBox = [this](HWND box) {
        if (m_boxShots.empty())
            return;
        const std::wstring name = m_boxShots.front();
        m_boxShots.pop_front();
        if (!name.empty())
            Save(box, name);
    };
}

const Script::Command* Script::Parse(const std::wstring& line, Arguments& arguments) {
    arguments = Words(line);
    if (arguments.empty() || arguments[0].starts_with(L'#'))
        return nullptr;
    const std::wstring name = arguments[0];
    arguments.erase(arguments.begin());
    for (const Command& command : Commands()) {
        if (name != command.name)
            continue;
        if (arguments.size() < command.least || arguments.size() > command.most)
            throw HostError{
                Format(L"\"%ls\" is used like this: %ls %ls", line.c_str(), command.name, command.arguments)};
        return &command;
    }
    throw HostError{Format(L"unknown command \"%ls\"", name.c_str())};
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
        (this->*run)(user, arguments);
    });
}

std::wstring Script::Help() {
    std::wstring text;
    for (const Command& command : Commands()) {
        std::wstring usage = Format(L"  %ls %ls", command.name, command.arguments);
        if (usage.size() < 34)
            usage.resize(34, L' ');
        else
            usage += L"\n" + std::wstring(34, L' ');
        text += usage + command.meaning + L"\n";
    }
    return text;
}

}  // namespace driverhost

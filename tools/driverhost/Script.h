// The script language: one command a line, played in the sheet as a person would use it.
#pragma once

#include <deque>
#include <filesystem>
#include <string>
#include <vector>

#include "tools/driverhost/SheetRun.h"

namespace driverhost {

class Script {
  public:
    // Pictures go to `outFolder`, which is created when the first one is saved.
    Script(SheetRun& run, const std::filesystem::path& outFolder);

    // HostError for an unknown command or a wrong number of arguments. Empty lines and lines that begin with
    // "#" say nothing.
    static void Check(const std::wstring& line);
    // Checks one line and adds it to the run.
    void Add(const std::wstring& line);

    // The commands with their arguments and meaning, for --help.
    static std::wstring Help();

  private:
    using Arguments = std::vector<std::wstring>;
    struct Command {
        std::wstring name;
        std::wstring arguments;  // those in brackets may be missing
        const wchar_t* meaning;
        void (*run)(Script&, SheetUser&, const Arguments&);
    };
    static const std::vector<Command>& Commands();
    static const Command* Parse(const std::wstring& line, Arguments& arguments);  // null for a remark

    static void Page(Script& script, SheetUser& user, const Arguments& words);
    static void Select(Script& script, SheetUser& user, const Arguments& words);
    static void Shot(Script& script, SheetUser& user, const Arguments& words);
    static void Shots(Script& script, SheetUser& user, const Arguments& words);
    static void Expect(Script& script, SheetUser& user, const Arguments& words);
    void Save(HWND window, const std::wstring& name);

    SheetRun& m_run;
    std::filesystem::path m_outFolder;
    std::deque<std::wstring> m_boxShots;
};

}  // namespace driverhost

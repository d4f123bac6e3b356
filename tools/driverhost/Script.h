// The script language: one command a line, played in the sheet as a person would use it.
#pragma once

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "tools/driverhost/SheetRun.h"

namespace driverhost {

class Script {
  public:
    // Pictures go to `outFolder`, which is created when the first one is saved.
    Script(SheetRun& run, const std::wstring& outFolder);

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
        const wchar_t* name;
        const wchar_t* arguments;
        size_t least;
        size_t most;
        const wchar_t* meaning;
        void (Script::*run)(SheetUser&, const Arguments&);
    };
    static const std::vector<Command>& Commands();
    static const Command* Parse(const std::wstring& line, Arguments& arguments);  // null for a remark

    void Page(SheetUser& user, const Arguments& arguments);
    void Tab(SheetUser& user, const Arguments& arguments);
    void Type(SheetUser& user, const Arguments& arguments);
    void Click(SheetUser& user, const Arguments& arguments);
    void Select(SheetUser& user, const Arguments& arguments);
    void Spin(SheetUser& user, const Arguments& arguments);
    void Item(SheetUser& user, const Arguments& arguments);
    void Box(SheetUser& user, const Arguments& arguments);
    void Browse(SheetUser& user, const Arguments& arguments);
    void Apply(SheetUser& user, const Arguments& arguments);
    void Ok(SheetUser& user, const Arguments& arguments);
    void Cancel(SheetUser& user, const Arguments& arguments);
    void Shot(SheetUser& user, const Arguments& arguments);
    void Shots(SheetUser& user, const Arguments& arguments);
    void Controls(SheetUser& user, const Arguments& arguments);
    void Expect(SheetUser& user, const Arguments& arguments);
    void Wait(SheetUser& user, const Arguments& arguments);

    void Save(HWND window, const std::wstring& name);

    SheetRun& m_run;
    std::wstring m_outFolder;
    std::deque<std::wstring> m_boxShots;
};

}  // namespace driverhost

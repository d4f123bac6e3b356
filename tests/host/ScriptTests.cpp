// The script language and the command line: what is understood, and what is refused before a sheet opens.
#include <gtest/gtest.h>

#include "tests/support/HostedSheet.h"
#include "tests/support/ScratchRegistry.h"
#include "tools/driverhost/Options.h"
#include "tools/driverhost/PrintCommand.h"
#include "tools/driverhost/Script.h"

namespace {

using namespace driverhost;
using kzp::test::HostedSheet;
using kzp::test::NoPrinter;

TEST(OptionsTest, OptionsCommandAndLines) {
    const Options options = ParseOptions({L"--shape", L"four-tabs", L"sheet", L"page 2", L"--diff", L"ok"});
    EXPECT_EQ(options.command, L"sheet");
    EXPECT_TRUE(options.sheet.extraFirstPage);
    EXPECT_TRUE(options.diff);
    EXPECT_EQ(options.script, (std::vector<std::wstring>{L"page 2", L"ok"}));
    EXPECT_EQ(ParseOptions({}).command, L"sheet");
    EXPECT_EQ(ParseOptions({L"print", L"--help"}).command, L"help");
}

TEST(OptionsTest, RefusesWhatItDoesNotKnow) {
    const std::vector<std::vector<std::wstring>> wrong = {
        {L"--frob"},           {L"--dll"},          {L"--timeout", L"soon"}, {L"--shape", L"round"},
        {L"sheet", L"clik 3"}, {L"sheet", L"type"}, {L"sheet", L"ok ok"},    {L"sheet", L"type 1 \"x"},
    };
    for (const auto& arguments : wrong)
        EXPECT_THROW(ParseOptions(arguments), HostError) << Utf8(arguments.back());
    EXPECT_NO_THROW(Script::Check(L"# a remark with \"blanks and words\""));
    EXPECT_EQ(Words(L" a \"b c\" \"\" d"), (std::vector<std::wstring>{L"a", L"b c", L"", L"d"}));
}

TEST(ScriptTest, PlaysLinesAndStopsAtTheFirstThatFails) {
    const kzp::test::ScratchRegistry registry;
    HostedSheet host(NoPrinter());
    Script script(host.run, L"out");
    for (const wchar_t* const line : {L"page 3", L"expect page 3", L"tab", L"expect page 1", L"tab back",
                                      L"expect page 3", L"expect page 1", L"ok"})
        script.Add(line);
    try {
        host.run.Show();
        ADD_FAILURE() << "the wrong expectation went unnoticed";
    } catch (const HostError& error) {
        EXPECT_EQ(error.text, L"page is \"3\", not \"1\"");
    }
    EXPECT_EQ(host.sheet.Applied(), 0);
}

TEST(PrintTest, TellsOnlyTheEventsThatWereAskedFor) {
    const kzp::test::ScratchRegistry registry;
    const PlugIn plugIn(BesideProgram(L"KZPWriterUI.dll"));
    const PrintOutcome outcome = PrintDocument(plugIn, nullptr, L"A document");
    std::vector<INT> told;
    for (const DocumentEventCall& call : outcome.calls) {
        told.push_back(call.event);
        EXPECT_EQ(call.result, S_OK);
        EXPECT_EQ(call.answer, 1);
    }
    EXPECT_EQ(outcome.filter, (std::vector<DWORD>{13, 12, 5}));
    EXPECT_EQ(told, (std::vector<INT>{14, 1, 5, 13, 12}));
    EXPECT_EQ(nullptr, GetModuleHandleW(L"KZPWriterUI.dll")) << "each time let go";
}

}  // namespace

// Drivers, printers and registries that give the sheet less than it wants.
#include "resources/resource.h"
#include "tests/support/SheetTest.h"

namespace kzp::test {
namespace {

namespace spooler = standins::spooler;
using driverhost::SheetUser;

struct Lack {
    const char* name;
    void (*options)(driverhost::SessionOptions&);  // before the sheet is made
    void (*param)(OEMCUIPPARAM&);                  // before it is shown
};

const Lack kLacks[] = {
    {"Nothing", nullptr, nullptr},
    {"MostItems", [](auto& options) { options.firstItems = 2; }, nullptr},
    {"Helper", [](auto& options) { options.offersHelper = false; }, nullptr},
    {"Heap", nullptr, [](auto& param) { param.hOEMHeap = nullptr; }},
    {"Handle", nullptr, [](auto& param) { param.hPrinter = reinterpret_cast<HANDLE>(0x1230); }},
    {"Record", nullptr, [](auto& param) { param.pOEMDM = nullptr; }},
    {"Registry", nullptr, [](auto&) { ScratchRegistry::RefuseUserKeys(); }},
    {"Printer", nullptr,
     [](auto&) {
         for (const wchar_t* const function :
              {L"GetPrinterW", L"SetPrinterW", L"GetPrinterDataW", L"SetPrinterDataW", L"GetFormW",
               L"AddFormW", L"SetFormW", L"GetPrinterDriverW", L"OpenPrinterW"})
             spooler::FailCall(function, ERROR_ACCESS_DENIED);
     }},
};

class Poor : public SheetTest, public testing::WithParamInterface<Lack> {};

// The user edits what there is, applies, and closes with OK.
TEST_P(Poor, SheetOpensAppliesAndCloses) {
    driverhost::SessionOptions options;
    if (GetParam().options)
        GetParam().options(options);
    HostedSheet host(std::move(options));
    if (GetParam().param)
        GetParam().param(host.session.UIParam());
    host.run.Add([&](SheetUser& page) {
        EXPECT_EQ(1, host.sheet.CurrentPage());
        for (int tab = 0; tab < 3; ++tab)
            EXPECT_NE(nullptr, host.sheet.PageWindow(tab)) << tab;
        page.Type(IDC_LEFT, L"0.25");
        page.Click(IDC_OUTPUT_KZP);
        page.Click(IDC_LANDSCAPE);
        page.Apply();
    });
    host.run.Add([](SheetUser& page) { page.Ok(); });
    EXPECT_EQ(CPSUI_OK, host.run.Show());
    EXPECT_EQ(2, host.sheet.Applied());
    if (GetParam().name == std::string("Registry")) {
        EXPECT_FALSE(Setting(L"OutputType"));
    } else {
        EXPECT_EQ(1u, Setting(L"OutputType")->Dword());
        EXPECT_EQ(L"YES", Setting(L"LaunchKZPView")->Text());
    }
}

INSTANTIATE_TEST_SUITE_P(Lacks, Poor, testing::ValuesIn(kLacks),
                         [](const auto& lack) { return std::string(lack.param.name); });

}  // namespace
}  // namespace kzp::test

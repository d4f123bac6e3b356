#include "tests/settings_page/SettingsPageTest.h"

#include <cstddef>
#include <cstring>
#include <utility>

#include "resources/resource.h"
#include "settings/SpoolerForms.h"

namespace kzp::test {

SettingsPageTest::SettingsPageTest() {
    AddCustomForm(driverhost::kDefaultPrinter, kCustomFormName, 2159, 2667);
}

void SettingsPageTest::Open(const std::vector<driverhost::SheetStep>& steps) {
    options.features = std::move(tree);
    host.emplace(std::move(options), shape);
    std::memcpy(host->session.DevMode().PlugInPart() + offsetof(KZPPrivateDevMode, fMargins), margins.data(),
                margins.size() * sizeof margins[0]);
    if (beforeShow)
        beforeShow();
    for (const auto& step : steps)
        host->run.Add(step);
    host->run.Show();
    host.reset();
    options = {};
    tree = driverhost::DriverTree::Standard(L"");
}

std::string SettingsPageTest::Announced() {
    std::string all;
    for (const auto& call : std::exchange(host->session.Helper().Announcements(), {}))
        all += call.keyword + "=" + std::to_string(call.selection) + " ";
    return all;
}

Texts SettingsPageTest::EditTexts(const driverhost::SheetUser& user) {
    Texts texts;
    for (const int edit : {IDC_WIDTH, IDC_HEIGHT, IDC_LEFT, IDC_TOP, IDC_RIGHT, IDC_BOTTOM})
        texts.push_back(user.Text(edit));
    return texts;
}

}  // namespace kzp::test

#include "tests/settings_page/SettingsPageTest.h"

#include <cstddef>
#include <cstring>

#include "resources/resource.h"
#include "settings/SpoolerForms.h"

namespace kzp::test {

SettingsPageTest::SettingsPageTest() {
    AddCustomForm(driverhost::kDefaultPrinter, kCustomFormName, 2159, 2667);
}

void SettingsPageTest::Open(const Steps& steps) {
    options.features = std::move(tree);
    HostedSheet host(std::move(options), shape);
    std::memcpy(host.session.DevMode().PlugInPart() + offsetof(KZPPrivateDevMode, fMargins), margins.data(),
                margins.size() * sizeof margins[0]);
    if (beforeShow)
        beforeShow(host);
    for (const auto& step : steps)
        host.run.Add([&host, step](driverhost::SheetUser& user) { step(host, user); });
    host.run.Show();
    options = {};
    tree = driverhost::DriverTree::Standard(L"");
}

Texts SettingsPageTest::EditTexts(driverhost::SheetUser& user) {
    Texts texts;
    for (const int edit : {IDC_WIDTH, IDC_HEIGHT, IDC_LEFT, IDC_TOP, IDC_RIGHT, IDC_BOTTOM})
        texts.push_back(user.Text(edit));
    return texts;
}

}  // namespace kzp::test

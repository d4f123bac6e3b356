// The settings page in a real sheet: a printer of the test's own with the form "User Defined", and what the
// driver offers.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tests/support/SheetTest.h"

namespace kzp::test {

using Texts = std::vector<std::wstring>;

inline constexpr int kSettingsTab = 1;

class SettingsPageTest : public SheetTest {
  protected:
    SettingsPageTest();

    // Arranged before the sheet opens.
    driverhost::DriverTree tree = driverhost::DriverTree::Standard(L"");
    driverhost::SessionOptions options;
    driverhost::SheetOptions shape;
    std::vector<float> margins = {12.7f, 25.4f, 6.35f, 0};  // of the private record: left, top, right, bottom
    std::function<void()> beforeShow;

    void ChooseCustomPaper() { tree.Find("PaperSize")->Sel = 7; }

    // Opens the sheet, runs the steps one by one as a person would, and cancels it if it is open still.
    // `tree` and `options` are used up.
    void Open(const std::vector<driverhost::SheetStep>& steps);
    std::optional<HostedSheet> host;  // meanwhile

    // What the driver was told since the last call: "PaperSize=5 Resolution=4 ".
    std::string Announced();

    // Edits in the order width, height, left, top, right, bottom.
    static Texts EditTexts(const driverhost::SheetUser& user);
};

}  // namespace kzp::test

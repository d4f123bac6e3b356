// The settings page in a real sheet: a printer of the test's own with the form "User Defined", and what the
// driver offers.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tests/support/SheetTest.h"

namespace kzp::test {

inline constexpr int kSettingsTab = 1;
inline constexpr int kOutputTab = 2;

class SettingsPageTest : public SheetTest {
  protected:
    SettingsPageTest();

    // Arranged before the sheet opens.
    driverhost::DriverTree tree = driverhost::DriverTree::Standard(L"");
    driverhost::SessionOptions options;
    driverhost::SheetOptions shape;
    std::vector<float> margins = {12.7f, 25.4f, 6.35f, 0};  // of the private record: left, top, right, bottom
    std::function<void(HostedSheet&)> beforeShow;

    void ChooseCustomPaper() { tree.Find("PaperSize")->Sel = 7; }
    void ChooseMillimeters() { tree.Find("CustomUnit")->Sel = 1; }

    // Opens the sheet, runs the steps one by one as a person would, and cancels it. `tree` is used up.
    using Steps = std::vector<std::function<void(HostedSheet&, driverhost::SheetUser&)>>;
    void Open(const Steps& steps);

    // Edits in the order width, height, left, top, right, bottom.
    static std::vector<std::wstring> EditTexts(driverhost::SheetUser& user);
};

using Texts = std::vector<std::wstring>;

}  // namespace kzp::test

// The settings page in a real sheet: a printer of the test's own, and what the driver offers.
#pragma once

#include <array>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/SheetTest.h"

namespace kzp::test {

using Texts = std::vector<std::wstring>;

inline constexpr int kSettingsTab = 1;
inline constexpr int kEdits[] = {IDC_WIDTH, IDC_HEIGHT, IDC_LEFT, IDC_TOP, IDC_RIGHT, IDC_BOTTOM};

class SettingsPageTest : public SheetTest {
  protected:
    // Arranged before the sheet opens.
    driverhost::DriverTree tree = driverhost::DriverTree::Standard(L"");
    driverhost::SessionOptions options;
    driverhost::SheetOptions shape;
    std::array<float, 4> margins = {12.7f, 25.4f, 6.35f,
                                    0};  // of the private record: left, top, right, bottom
    std::function<void()> beforeShow = [] {};

    void ChooseCustomPaper() { tree.Find("PaperSize")->Sel = 7; }

    // Opens the sheet, runs the steps one by one as a person would, and cancels it if it is open still.
    // `tree` and `options` are used up.
    void Open(const std::vector<driverhost::SheetStep>& steps) {
        options.features = std::move(tree);
        host.emplace(std::move(options), shape);
        std::memcpy(host->session.DevMode().PlugInPart() + offsetof(KZPPrivateDevMode, fMargins),
                    margins.data(), sizeof margins);
        beforeShow();
        for (const auto& step : steps)
            host->run.Add(step);
        host->run.Show();
        host.reset();
        options = {};
        tree = driverhost::DriverTree::Standard(L"");
    }
    std::optional<HostedSheet> host;  // meanwhile

    // What the driver was told since the last call: "PaperSize=5 Resolution=4 ".
    std::string Announced() {
        std::string all;
        for (const auto& call : std::exchange(host->session.Helper().Announcements(), {})) {
            EXPECT_EQ(call.mode, OEMCUIP_DOCPROP);
            all += call.keyword + "=" + std::to_string(call.selection) + " ";
        }
        return all;
    }

    static Texts EditTexts(const driverhost::SheetUser& user) {
        Texts texts;
        for (const int edit : kEdits)
            texts.push_back(user.Text(edit));
        return texts;
    }
};

}  // namespace kzp::test

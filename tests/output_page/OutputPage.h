// The Output Location page in a real sheet, with a registry and folders of its own.
#pragma once

#include <gtest/gtest.h>

#include "resources/resource.h"
#include "tests/support/Files.h"
#include "tests/support/HostedSheet.h"
#include "tests/support/ScratchRegistry.h"

namespace kzp::test {

class OutputPage : public testing::Test {
  protected:
    OutputPage();
    ~OutputPage() override;

    using Step = std::function<void(driverhost::SheetUser&, driverhost::SheetRun&)>;

    // Opens a sheet on the page, plays the steps, and cancels unless they pressed OK.
    void Show(std::initializer_list<Step> steps);

    // Settings, as stored. An unset text is empty.
    static void Store(const wchar_t* name, const std::wstring& text);
    static std::wstring Stored(const wchar_t* name);

    std::wstring Folder(const std::wstring& name) const;  // makes it
    static std::wstring CurrentFolder();
    // Paths joined as the history stores them.
    static std::wstring History(const std::vector<std::wstring>& folders);

    ScratchRegistry registry;
    TemporaryFolder folders;
    driverhost::PlugIn plugIn;
    bool plugInItem = true;  // whether the driver passes the plug-in's own item

    // Of the latest sheet.
    std::vector<driverhost::Announcement> announcements;
    std::vector<driverhost::SeenBox> boxes;

  private:
    std::wstring m_startFolder;
};

// Steps and looks.
std::vector<std::wstring> Listed(const driverhost::SheetUser& user);
int SelectedIndex(const driverhost::SheetUser& user);
void DisableApply(driverhost::SheetUser& user);

}  // namespace kzp::test

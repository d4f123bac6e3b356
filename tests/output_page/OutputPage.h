// The Output Location page in a real sheet, with a registry and folders of its own, and what it asks of the
// platform.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>

#include "resources/resource.h"
#include "tests/support/Files.h"
#include "tests/support/HostedSheet.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/ScratchRegistry.h"

namespace kzp::test {

using driverhost::SheetUser;
using Names = std::vector<std::wstring>;

class OutputPage : public testing::Test {
  protected:
    OutputPage();
    ~OutputPage() override;

    // Opens a sheet on the page, plays the steps, and cancels unless they pressed OK.
    void Show(std::initializer_list<driverhost::SheetStep> steps);
    // A step: chooses a folder in the browser; an empty one cancels it.
    static driverhost::SheetStep Browse(const std::wstring& folder);
    static void Ok(SheetUser& user) { user.Ok(); }

    // Settings, as stored. An unset text is empty.
    static void Store(const wchar_t* name, const std::wstring& text);
    static std::wstring Stored(const wchar_t* name);

    std::wstring Folder(const std::wstring& name) const;  // makes it
    static std::wstring History(const Names& folders);    // as it is stored

    // Browsers, message boxes and created files, each in a line.
    static Names& Asked();

    ScratchRegistry registry;
    TemporaryFolder folders;
    driverhost::PlugIn plugIn;
    bool plugInItem = true;                               // whether the driver passes the plug-in's own item
    std::vector<driverhost::Announcement> announcements;  // of the latest sheet

  private:
    ImportPatch m_functions, m_boxes, m_files;
    std::filesystem::path m_startFolder = std::filesystem::current_path();
};

// Looks and steps.
int SelectedIndex(const SheetUser& user);
void DisableApply(SheetUser& user);
void Tell(SheetUser& user, int control, WORD code);  // as the control itself does

}  // namespace kzp::test

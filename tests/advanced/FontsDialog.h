// The fonts dialog in a page of a bare sheet: the plug-in's callback embeds it and commits it, as in the real
// one.
#pragma once

#include <gtest/gtest.h>

#include <optional>

#include "resources/resource.h"
#include "tests/support/HostedSheet.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/ScratchRegistry.h"

namespace kzp::test {

using Names = std::vector<std::wstring>;

inline constexpr DWORD kIntentItem = 5, kMethodItem = 6, kFontsItem = 9;

class FontsDialog : public testing::Test {
  protected:
    FontsDialog();
    ~FontsDialog() override;

    // What the enumeration hands out, call by call; without one, the machine's own fonts.
    void Install(Names families);
    // A page with the dialog, on these selections of its items.
    void Open(LONG fonts = 0, LONG intent = 0, LONG method = 0, std::optional<DWORD> toldItems = {});
    void Close();  // destroys the page, as a closing sheet does
    void Commit() { session->TellCallback(CPSUICB_REASON_APPLYNOW, page); }

    // FONTLIST, as bytes and as names.
    void StoreBytes(const std::vector<BYTE>& bytes);
    void Store(const Names& names);
    static Names StoredNames();

    HWND Control(int id) const { return GetDlgItem(dialog, id); }
    bool IsRadioChecked(int id) const { return IsDlgButtonChecked(dialog, id) == BST_CHECKED; }
    void Tell(int id, WORD code) const { SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(id, code), 0); }
    void Choose(int combo, int index) const;  // as from the keyboard: with its notification
    Names Listed(bool checkedOnly = false) const;
    void SetImage(int index, UINT image) const;  // 1 unchecked, 2 checked, 0 none

    // Whether Apply was enabled since this was asked last.
    bool TakeApply() const { return EnableWindow(apply, FALSE) == 0; }
    LONG ItemSelection(DWORD position) { return session->Tree().All().at(position).Sel; }
    std::vector<driverhost::Announcement>& Said() { return session->Helper().Announcements(); }

    ScratchRegistry registry;
    driverhost::PlugIn plugIn;
    std::unique_ptr<driverhost::DocumentSession> session;
    HWND sheet = nullptr;
    HWND apply = nullptr;
    HWND page = nullptr;
    HWND own = nullptr;  // the first of the page's own controls
    HWND dialog = nullptr;

  private:
    std::optional<ImportPatch> m_enumeration;
};

}  // namespace kzp::test

// The fonts dialog in a page of a bare sheet: the plug-in's callback embeds it and commits it, as in the real
// one.
#pragma once

#include <gtest/gtest.h>

#include <optional>

#include "pages/advanced/FontList.h"
#include "resources/resource.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/ScratchRegistry.h"
#include "tools/driverhost/DocumentSession.h"

namespace kzp::test {

class FontsDialog : public testing::Test {
  protected:
    FontsDialog();
    ~FontsDialog() override;

    // What the enumeration hands out, call by call; without one, the machine's own fonts.
    void Install(std::vector<std::wstring> families);
    void OpenPage(driverhost::SessionOptions options = {});
    void Open(driverhost::SessionOptions options = {});  // and expects the dialog there
    void Close();                                        // destroys the page, as a closing sheet does
    void Commit() { session->TellCallback(CPSUICB_REASON_APPLYNOW, page); }

    // FONTLIST, as bytes and as names.
    void Store(const std::vector<std::wstring>& names);
    void StoreBytes(const std::vector<BYTE>& bytes);
    static std::vector<BYTE> StoredBytes();
    static std::vector<std::wstring> StoredNames();

    HWND Control(int id) const { return GetDlgItem(dialog, id); }
    bool IsRadioChecked(int id) const { return IsDlgButtonChecked(dialog, id) == BST_CHECKED; }
    void Click(int id) const { SendMessageW(Control(id), BM_CLICK, 0, 0); }
    void Choose(int combo, int index) const;  // as from the keyboard: with its notification

    std::vector<std::wstring> Listed() const;
    std::vector<std::wstring> CheckedNames() const;
    void SetImage(int index, UINT image) const;  // 1 unchecked, 2 checked, 0 none
    bool IsApplyEnabled() const { return IsWindowEnabled(apply) != FALSE; }
    LONG ItemSelection(DWORD position) { return session->Tree().All().at(position).Sel; }

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

inline constexpr DWORD kIntentItem = 5, kMethodItem = 6, kFontsItem = 9;

}  // namespace kzp::test

// A list view whose entries carry check boxes, spoken to by messages alone: the common controls' library is
// the host's, and the plug-in does not load it.
#pragma once

#include <windows.h>

#include <span>
#include <string>

namespace kzp {

class CCheckListViewCtrl {
  public:
    // Takes a list view in list mode that lives at least as long as this object is used, and gives it check
    // boxes and one column of `width` pixels.
    void Attach(HWND list, int width);

    // While one lives, the list does not paint and IsChanging() answers true: painting, and telling the
    // sheet, after each of thousands of changes would take seconds.
    class ManyChanges {
      public:
        explicit ManyChanges(CCheckListViewCtrl& list);
        ~ManyChanges();
        ManyChanges(const ManyChanges&) = delete;
        ManyChanges& operator=(const ManyChanges&) = delete;

      private:
        CCheckListViewCtrl& m_list;
    };

    HWND Window() const { return m_list; }
    bool IsChanging() const { return m_changes != 0; }
    int Count() const;

    // Adds the names, unchecked. `names` are in ascending order without regard to case; the control sorts
    // them itself and has the last word.
    void Add(std::span<const std::wstring> names);

    // At most 31 characters of the entry's text.
    std::wstring Text(int index) const;

    // An entry without any check box counts as checked.
    bool IsChecked(int index) const;
    void Check(int index);
    void CheckAll(bool checked);

  private:
    void SetStateImage(int index, UINT image);

    HWND m_list = nullptr;
    int m_changes = 0;  // ManyChanges that live
};

}  // namespace kzp

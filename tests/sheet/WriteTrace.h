// Everything that the plug-in writes while the object lives, in one list and in order: settings, printer data
// and forms.
#pragma once

#include <string>
#include <vector>

#include "tests/support/ImportPatch.h"

namespace kzp::test {

class WriteTrace {
  public:
    explicit WriteTrace(HMODULE plugIn);

    // "LaunchKZPView=YES", "OutputType=2", "FONTLIST=128 bytes", "printer: KZP Margin=12.70 0.00 0.00 0.00",
    // "form: User Defined=100.000x90.000".
    static std::vector<std::wstring> Take();  // and forget them

  private:
    ImportPatch m_settings;
    ImportPatch m_printerData;
    ImportPatch m_form;
};

}  // namespace kzp::test

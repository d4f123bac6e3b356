// The settings page's state against any typed margins, forms and record.
#include <array>

#include "core/KZPPrivateDevMode.h"
#include "pages/settings/Measures.h"
#include "settings/SheetState.h"
#include "tools/fuzz/Input.h"

using namespace kzp;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    KZPPrivateDevMode record = {};
    const auto margins = input.Take<std::array<float, kMargins>>();
    std::memcpy(record.fMargins, margins.data(), sizeof record.fMargins);
    OEMCUIPPARAM param = {&record};
    g_sheet.CurrentUIParam = input.Take<std::uint8_t>() % 2 != 0 ? &param : nullptr;

    g_measures = {};
    g_measures.unit = input.Take<std::uint8_t>() % 3;
    g_measures.orientation = input.Take<std::uint8_t>() % 2;
    g_measures.CustomSizeSelected = input.Take<std::uint8_t>() % 2 != 0;
    g_measures.formWidthIn = input.Take<float>();
    g_measures.formHeightIn = input.Take<float>();
    g_measures.customWidth = input.Take<float>();
    g_measures.customHeight = input.Take<float>();

    TakeRecordMargins();
    (void)SizesValid();
    for (int margin = kLeft; margin < kMargins; ++margin) {
        const std::wstring text = input.TakeText(kNumberChars / 8);
        text.copy(g_measures.marginText[margin], kNumberChars - 1);
        g_measures.typedMargin[margin] = g_measures.checkedMargin[margin] =
            ParseNumber(g_measures.marginText[margin]);
    }
    const bool valid = SizesValid();
    fuzz::Expect(valid == SizesValid(), "asking changes nothing");
    CommitMargins();
    return 0;
}

// Paper forms as the spooler keeps them, above all the writer's own. Sizes are thousandths of a millimetre
// unless stated otherwise. Failures are silent.
#pragma once

#include <windows.h>

#include <optional>

namespace kzp {

// Name of the custom form, and of the driver's paper option that stands for it. Compared exactly.
inline constexpr wchar_t kCustomFormName[] = L"User Defined";

// True for exactly that name; false for null.
bool IsCustomForm(PCWSTR name);

// Nothing without a printer, and for a form that cannot be read.
std::optional<SIZEL> ReadFormSize(HANDLE printer, PCWSTR name);

// Adds a user form to a printer through a handle of its own; false when the printer does not open with full
// access or the spooler refuses.
bool AddCustomForm(PCWSTR printerName, PCWSTR formName, LONG widthTenthMm, LONG heightTenthMm);

// Gives the form "User Defined" another size; false when the spooler refuses.
bool ResizeCustomForm(HANDLE printer, SIZEL size);

}  // namespace kzp

// Paper forms: those that are built in and those that users added. Names are without regard to case.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

namespace kzp::standins::spooler {

struct Form {
    std::wstring name;
    SIZEL size;  // thousandths of a millimetre, as are the edges of the area
    RECTL imageableArea;
    DWORD flags;  // FORM_BUILTIN, FORM_USER or FORM_PRINTER
    short paper;  // DMPAPER_... of a built-in form, 0 otherwise
};

std::optional<Form> FindForm(const std::wstring& name);
std::vector<Form> AllForms();  // built-in ones first

}  // namespace kzp::standins::spooler

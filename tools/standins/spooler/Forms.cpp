// Paper forms: those that are built in and those that users added.
#include <windows.h>
#include <winspool.h>

#include <cstring>
#include <optional>
#include <string>

#include "tools/standins/common/Registry.h"
#include "tools/standins/spooler/Calls.h"
#include "tools/standins/spooler/Handles.h"
#include "tools/standins/spooler/Places.h"
#include "tools/standins/spooler/Reply.h"

using namespace kzp::standins;
using namespace kzp::standins::spooler;

namespace {

// Names are without regard to case.
struct Form {
    std::wstring name;
    SIZEL size;  // thousandths of a millimetre, as are the edges of the area
    RECTL imageableArea;
    DWORD flags;  // FORM_BUILTIN, FORM_USER or FORM_PRINTER
};

struct BuiltInForm {
    const wchar_t* name;
    LONG width, height;
};

constexpr BuiltInForm kBuiltInForms[] = {
    {L"Letter", 215900, 279400},   {L"Tabloid", 279400, 431800},   {L"Ledger", 431800, 279400},
    {L"Legal", 215900, 355600},    {L"Statement", 139700, 215900}, {L"Executive", 184150, 266700},
    {L"A3", 297000, 420000},       {L"A4", 210000, 297000},        {L"A5", 148000, 210000},
    {L"B4 (JIS)", 257000, 364000}, {L"B5 (JIS)", 182000, 257000},  {L"Folio", 215900, 330200},
    {L"Quarto", 215000, 275000},   {L"10x14", 254000, 355600},     {L"11x17", 279400, 431800},
    {L"A6", 105000, 148000},       {L"A2", 420000, 594000},
};

// A user's form as the registry holds it, one value each.
struct StoredForm {
    SIZEL size;
    RECTL imageableArea;
    DWORD index;  // reserved; 0
    DWORD flags;
};
static_assert(sizeof(StoredForm) == 32);

// Nothing when the value is missing or is not a form.
std::optional<Form> ReadUserForm(const Key& forms, const std::wstring& name) {
    const auto value = ReadValue(forms, name);
    if (!value || value->type != REG_BINARY || value->bytes.size() != sizeof(StoredForm))
        return std::nullopt;
    StoredForm stored;
    std::memcpy(&stored, value->bytes.data(), sizeof stored);
    return Form{name, stored.size, stored.imageableArea, stored.flags};
}

std::optional<Form> FindForm(const std::wstring& name) {
    for (const BuiltInForm& form : kBuiltInForms) {
        if (SameName(form.name, name))
            return Form{form.name, {form.width, form.height}, {0, 0, form.width, form.height}, FORM_BUILTIN};
    }
    const Key key = OpenKey(HKEY_LOCAL_MACHINE, kFormsKey);
    for (const std::wstring& stored : ValueNames(key)) {
        if (SameName(stored, name))
            return ReadUserForm(key, stored);  // under the name with which it was added
    }
    return std::nullopt;
}

DWORD WriteUserForm(const std::wstring& name, const FORM_INFO_1W& info) {
    const StoredForm stored{info.Size, info.ImageableArea, 0, info.Flags};
    return static_cast<DWORD>(
        WriteValue(CreateKey(HKEY_LOCAL_MACHINE, kFormsKey), name, REG_BINARY, &stored, sizeof stored));
}

DWORD CheckMeasures(const FORM_INFO_1W& info) {
    const RECTL& area = info.ImageableArea;
    if (info.Flags != FORM_USER && info.Flags != FORM_PRINTER)
        return ERROR_INVALID_PARAMETER;
    const bool fits = info.Size.cx > 0 && info.Size.cy > 0 && area.left >= 0 && area.top >= 0 &&
                      area.left < area.right && area.top < area.bottom && area.right <= info.Size.cx &&
                      area.bottom <= info.Size.cy;
    return fits ? ERROR_SUCCESS : ERROR_INVALID_FORM_SIZE;
}

DWORD CheckMayChange(HANDLE handle) {
    OpenedHandle opened;
    if (const DWORD error = FindHandle(handle, opened))
        return error;
    return opened.MayAdminister() ? ERROR_SUCCESS : ERROR_ACCESS_DENIED;
}

DWORD Add(HANDLE handle, DWORD level, const BYTE* data) {
    if (const DWORD error = CheckMayChange(handle))
        return error;
    if (level != 1)
        return ERROR_INVALID_LEVEL;
    if (!data)
        return ERROR_INVALID_PARAMETER;
    const auto& info = *reinterpret_cast<const FORM_INFO_1W*>(data);
    if (IsEmpty(info.pName) || std::wcslen(info.pName) >= CCHFORMNAME)
        return ERROR_INVALID_FORM_NAME;
    if (const DWORD error = CheckMeasures(info))
        return error;
    return FindForm(info.pName) ? ERROR_FILE_EXISTS : WriteUserForm(info.pName, info);
}

// The user's form of that name, for changing it.
DWORD FindChangeable(HANDLE handle, const wchar_t* name, std::wstring& found) {
    if (const DWORD error = CheckMayChange(handle))
        return error;
    const auto form = IsEmpty(name) ? std::nullopt : FindForm(name);
    if (!form)
        return ERROR_INVALID_FORM_NAME;
    found = form->name;
    return form->flags == FORM_BUILTIN ? ERROR_INVALID_PARAMETER : ERROR_SUCCESS;
}

DWORD Set(HANDLE handle, const wchar_t* name, DWORD level, const BYTE* data) {
    std::wstring form;
    if (const DWORD error = FindChangeable(handle, name, form))
        return error;
    if (level != 1)
        return ERROR_INVALID_LEVEL;
    if (!data)
        return ERROR_INVALID_PARAMETER;
    const auto& info = *reinterpret_cast<const FORM_INFO_1W*>(data);
    const DWORD error = CheckMeasures(info);
    return error != ERROR_SUCCESS ? error : WriteUserForm(form, info);
}

DWORD HandOut(const Form& form, BYTE* buffer, DWORD bytes, DWORD* needed) {
    Reply<FORM_INFO_1W> reply;
    reply.Add({form.flags, nullptr, form.size, form.imageableArea});
    reply.Text(&FORM_INFO_1W::pName, form.name);
    return reply.HandOut(buffer, bytes, needed);
}

// Reading forms needs any open handle, of the server or of a printer.
DWORD CheckMayRead(HANDLE handle, DWORD level) {
    OpenedHandle opened;
    if (const DWORD error = FindHandle(handle, opened))
        return error;
    return level == 1 ? ERROR_SUCCESS : ERROR_INVALID_LEVEL;
}

}  // namespace

extern "C" {

BOOL WINAPI GetFormW(HANDLE handle, LPWSTR name, DWORD level, LPBYTE buffer, DWORD bytes, LPDWORD needed) {
    return Succeeded(Answer(L"GetFormW", [&]() -> DWORD {
        if (const DWORD error = CheckMayRead(handle, level))
            return error;
        const auto form = IsEmpty(name) ? std::nullopt : FindForm(name);
        return form ? HandOut(*form, buffer, bytes, needed) : DWORD{ERROR_INVALID_FORM_NAME};
    }));
}

BOOL WINAPI AddFormW(HANDLE handle, DWORD level, LPBYTE data) {
    const bool named = data && level == 1;
    return Succeeded(AnswerChange(L"AddFormW",
                                  named ? reinterpret_cast<const FORM_INFO_1W*>(data)->pName : nullptr,
                                  [&] { return Add(handle, level, data); }));
}

BOOL WINAPI SetFormW(HANDLE handle, LPWSTR name, DWORD level, LPBYTE data) {
    return Succeeded(AnswerChange(L"SetFormW", name, [&] { return Set(handle, name, level, data); }));
}

}  // extern "C"

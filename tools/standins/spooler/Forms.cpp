// Paper forms: those that are built in and those that users added.
#include <windows.h>
#include <winspool.h>

#include <cstring>
#include <optional>
#include <string>

#include "tools/standins/common/Registry.h"
#include "tools/standins/spooler/Calls.h"
#include "tools/standins/spooler/Handles.h"
#include "tools/standins/spooler/Reply.h"

using namespace kzp::standins;
using namespace kzp::standins::spooler;

namespace {

// A user's form as the registry holds it, one value each, under its name.
struct StoredForm {
    SIZEL size;  // thousandths of a millimetre, as are the edges of the area
    RECTL imageableArea;
    DWORD index;  // reserved; 0
    DWORD flags;  // FORM_BUILTIN, FORM_USER or FORM_PRINTER
};
static_assert(sizeof(StoredForm) == 32);

struct Form : StoredForm {
    std::wstring name;
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

// Under the name with which it was added.
std::optional<Form> FindForm(const std::wstring& name) {
    for (const auto& [builtIn, width, height] : kBuiltInForms) {
        if (SameName(builtIn, name))
            return Form{{{width, height}, {0, 0, width, height}, 0, FORM_BUILTIN}, builtIn};
    }
    const Key key = OpenKey(HKEY_LOCAL_MACHINE, kFormsKey);
    for (const std::wstring& stored : ValueNames(key)) {
        const auto value = SameName(stored, name) ? ReadValue(key, stored) : std::nullopt;
        if (!value || value->type != REG_BINARY || value->bytes.size() != sizeof(StoredForm))
            continue;
        Form form{{}, stored};
        std::memcpy(static_cast<StoredForm*>(&form), value->bytes.data(), sizeof(StoredForm));
        return form;
    }
    return std::nullopt;
}

Form ExistingForm(const wchar_t* name) {
    const auto form = IsEmpty(name) ? std::nullopt : FindForm(name);
    Require(form.has_value(), ERROR_INVALID_FORM_NAME);
    return *form;
}

void Store(const std::wstring& name, const FORM_INFO_1W& info) {
    const RECTL& area = info.ImageableArea;
    Require(info.Flags == FORM_USER || info.Flags == FORM_PRINTER, ERROR_INVALID_PARAMETER);
    Require(info.Size.cx > 0 && info.Size.cy > 0 && area.left >= 0 && area.top >= 0 &&
                area.left < area.right && area.top < area.bottom && area.right <= info.Size.cx &&
                area.bottom <= info.Size.cy,
            ERROR_INVALID_FORM_SIZE);
    const StoredForm stored{info.Size, area, 0, info.Flags};
    Check(WriteValue(CreateKey(HKEY_LOCAL_MACHINE, kFormsKey), name, REG_BINARY, &stored, sizeof stored));
}

}  // namespace

extern "C" {

// Reading forms needs any open handle, of the server or of a printer.
BOOL WINAPI GetFormW(HANDLE handle, LPWSTR name, DWORD level, LPBYTE buffer, DWORD bytes, LPDWORD needed) {
    return Succeeded(Answer(L"GetFormW", [&] {
        FindHandle(handle);
        Require(level == 1, ERROR_INVALID_LEVEL);
        const Form form = ExistingForm(name);
        Reply<FORM_INFO_1W> reply;
        reply.Add({form.flags, nullptr, form.size, form.imageableArea});
        reply.Text(&FORM_INFO_1W::pName, form.name);
        reply.HandOut(buffer, bytes, needed);
    }));
}

BOOL WINAPI AddFormW(HANDLE handle, DWORD level, LPBYTE data) {
    const wchar_t* const name = TextIn(data, level == 1, &FORM_INFO_1W::pName);
    return Succeeded(AnswerChange(L"AddFormW", name, [&] {
        FindHandle(handle, true);
        const auto& info = RecordOf<FORM_INFO_1W>(data, level == 1);
        Require(!IsEmpty(name) && std::wcslen(name) < CCHFORMNAME, ERROR_INVALID_FORM_NAME);
        Require(!FindForm(name), ERROR_FILE_EXISTS);
        Store(name, info);
    }));
}

BOOL WINAPI SetFormW(HANDLE handle, LPWSTR name, DWORD level, LPBYTE data) {
    return Succeeded(AnswerChange(L"SetFormW", name, [&] {
        FindHandle(handle, true);
        const Form form = ExistingForm(name);
        Require(form.flags != FORM_BUILTIN, ERROR_INVALID_PARAMETER);
        Store(form.name, RecordOf<FORM_INFO_1W>(data, level == 1));
    }));
}

}  // extern "C"

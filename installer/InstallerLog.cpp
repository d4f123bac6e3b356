#include "installer/InstallerLog.h"

#include <msiquery.h>

#include "core/Module.h"
#include "help/ResourceModule.h"
#include "resources/resource.h"
#include "support/UniqueHandle.h"

namespace kzp {

namespace {

struct InstallerHandleTraits {
    using Type = MSIHANDLE;
    static Type Empty() { return 0; }
    static void Close(Type handle) { MsiCloseHandle(handle); }
};
using UniqueInstallerHandle = UniqueHandle<InstallerHandleTraits>;

constexpr int kTextCharacters = 260;
constexpr wchar_t kBuiltInCaption[] = L"Error";

void SendToLog(MSIHANDLE hInstall, const wchar_t* text, const DWORD* code) {
    const UniqueInstallerHandle record(MsiCreateRecord(1));
    if (!record)
        return;
    MsiRecordClearData(record.Get());
    MsiRecordSetStringW(record.Get(), 0, text);
    if (code)
        MsiRecordSetInteger(record.Get(), 1, static_cast<int>(*code));
    MsiProcessMessage(hInstall, INSTALLMESSAGE_INFO, record.Get());
}

}  // namespace

void LogInstallMessage(MSIHANDLE hInstall, const wchar_t* text) {
    SendToLog(hInstall, text, nullptr);
}

void LogInstallError(MSIHANDLE hInstall, const wchar_t* text, DWORD code) {
    SendToLog(hInstall, text, &code);
}

int LoadInstallerString(UINT id, wchar_t* buffer, int capacity) {
    const ResModuleUse texts(g_hInstance);
    // A null module would look among the texts of the installer's own program.
    return texts.Get() ? LoadStringW(texts.Get(), id, buffer, capacity) : 0;
}

void ShowInstallFailure(const InstallFailure& failure) {
    wchar_t caption[kTextCharacters] = {};
    wchar_t text[kTextCharacters] = {};
    if (LoadInstallerString(IDS_INSTALL_ERROR_CAPTION, caption, kTextCharacters) > 0 &&
        LoadInstallerString(failure.textId, text, kTextCharacters) > 0)
        MessageBoxW(nullptr, text, caption, MB_OK);
    else
        MessageBoxW(nullptr, failure.builtInText, kBuiltInCaption, MB_OK);
}

std::wstring GetInstallerProperty(MSIHANDLE hInstall, const wchar_t* name) {
    wchar_t nothing[1] = {};
    DWORD length = 0;
    if (MsiGetPropertyW(hInstall, name, nothing, &length) != ERROR_MORE_DATA)
        return {};
    std::wstring value(++length, L'\0');
    if (MsiGetPropertyW(hInstall, name, value.data(), &length) != ERROR_SUCCESS)
        return {};
    value.resize(wcsnlen(value.c_str(), value.size()));
    return value;
}

}  // namespace kzp

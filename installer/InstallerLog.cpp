#include "installer/InstallerLog.h"

#include <msiquery.h>

#include <type_traits>

#include "core/Module.h"
#include "help/ResourceModule.h"
#include "resources/resource.h"
#include "support/SystemLibrary.h"
#include "support/UniqueHandle.h"

namespace kzp {

namespace {

constexpr UINT kMissing = ERROR_CALL_NOT_IMPLEMENTED;

// Calls a function of Windows Installer, which no printing program needs; answers `refusal` where it is
// missing. Every handle is msi.dll's own, so whoever runs the action keeps that loaded.
template <class Function, class... Arguments>
auto Call(const char* name, std::invoke_result_t<Function&, Arguments...> refusal, Arguments... arguments) {
    const UniqueModule installer = LoadSystemLibrary(L"msi.dll");
    const auto function = FindFunction<Function*>(installer, name);
    return function ? function(arguments...) : refusal;
}

struct InstallerHandleTraits {
    using Type = MSIHANDLE;
    static Type Empty() { return 0; }
    static void Close(Type handle) { Call<decltype(MsiCloseHandle)>("MsiCloseHandle", kMissing, handle); }
};
using UniqueInstallerHandle = UniqueHandle<InstallerHandleTraits>;

constexpr int kTextCharacters = 260;
constexpr wchar_t kBuiltInCaption[] = L"Error";

void SendToLog(MSIHANDLE hInstall, const wchar_t* text, const DWORD* code) {
    const UniqueInstallerHandle record(Call<decltype(MsiCreateRecord)>("MsiCreateRecord", 0, 1u));
    if (!record)
        return;
    Call<decltype(MsiRecordClearData)>("MsiRecordClearData", kMissing, record.Get());
    Call<decltype(MsiRecordSetStringW)>("MsiRecordSetStringW", kMissing, record.Get(), 0u, text);
    if (code)
        Call<decltype(MsiRecordSetInteger)>("MsiRecordSetInteger", kMissing, record.Get(), 1u,
                                            static_cast<int>(*code));
    Call<decltype(MsiProcessMessage)>("MsiProcessMessage", int{IDCANCEL}, hInstall, INSTALLMESSAGE_INFO,
                                      record.Get());
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

UINT GetInstallerProperty(MSIHANDLE hInstall, const wchar_t* name, wchar_t* buffer, DWORD& characters) {
    return Call<decltype(MsiGetPropertyW)>("MsiGetPropertyW", kMissing, hInstall, name, buffer, &characters);
}

std::wstring GetInstallerProperty(MSIHANDLE hInstall, const wchar_t* name) {
    wchar_t nothing[1] = {};
    DWORD length = 0;
    if (GetInstallerProperty(hInstall, name, nothing, length) != ERROR_MORE_DATA)
        return {};
    std::wstring value(++length, L'\0');
    if (GetInstallerProperty(hInstall, name, value.data(), length) != ERROR_SUCCESS)
        return {};
    value.resize(wcsnlen(value.c_str(), value.size()));
    return value;
}

}  // namespace kzp

#include "support/Shell.h"

#include "support/SystemLibrary.h"

namespace kzp::shell {

namespace {

template <class Function>
Function* Find(const char* name) {
    const UniqueModule library = LoadSystemLibrary(L"shell32.dll");
    HMODULE kept = nullptr;
    if (!library ||
        !GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                            reinterpret_cast<LPCWSTR>(library.Get()), &kept))
        return nullptr;
    return FindFunction<Function*>(library, name);
}

}  // namespace

bool Execute(SHELLEXECUTEINFOW& start) {
    const auto execute = Find<decltype(ShellExecuteExW)>("ShellExecuteExW");
    return execute && execute(&start);
}

HRESULT GetSpecialFolder(int folder, LPITEMIDLIST* items) {
    const auto locate = Find<decltype(SHGetSpecialFolderLocation)>("SHGetSpecialFolderLocation");
    return locate ? locate(nullptr, folder, items) : E_NOTIMPL;
}

LPITEMIDLIST BrowseForFolder(BROWSEINFOW& browse) {
    const auto show = Find<decltype(SHBrowseForFolderW)>("SHBrowseForFolderW");
    return show ? show(&browse) : nullptr;
}

bool GetPath(LPCITEMIDLIST items, wchar_t (&path)[MAX_PATH]) {
    const auto get = Find<decltype(SHGetPathFromIDListW)>("SHGetPathFromIDListW");
    return get && get(items, path);
}

}  // namespace kzp::shell

// A machine with the printer installed, the delivered plug-in loaded, and companions that really run.
#pragma once

#include <string>
#include <vector>

#include "tests/support/Files.h"
#include "tests/support/PlugInDll.h"
#include "tests/support/ScratchRegistry.h"

namespace kzp::test {

inline constexpr wchar_t kInteraction[] = L"KzpWriterInteraction.exe";
inline constexpr wchar_t kLauncher[] = L"KZPAppLauncher.exe";
inline constexpr wchar_t kViewer[] = L"PlansightApp.exe";
inline constexpr wchar_t kViewerKey[] = L"SOFTWARE\\Wow6432Node\\Brimlake\\Plansight\\ProductInfo";

// Running processes whose executable file has this name, in any case.
size_t CountProcesses(const wchar_t* name);

class PrintingMachine {
  public:
    // A spooled queue, both companions in the help file's folder, no viewer, and a user who wants it.
    PrintingMachine();
    ~PrintingMachine();  // ends every companion

    void SetQueueAttributes(DWORD attributes);
    void SetHelpPath(const std::wstring& path);
    void SetViewerOption(const std::wstring& text);
    void InstallViewer();                                // its folder stored with a closing backslash
    void SetViewerLocation(const std::wstring& folder);  // as stored

    // Puts a companion under `name` into the folder; answers its path.
    std::wstring Install(const std::wstring& name);

    // Starts an installed companion as somebody else would have.
    void Run(const std::wstring& name);

    // Sends one event; answers *piResult.
    INT Send(INT event, void* out = nullptr);
    INT StartDocument();

    // A process of that name prints a document and ends; answers its id.
    DWORD PrintIn(const std::wstring& processName);

    // How many of each run, the interaction application first: "1 0".
    std::string Running() const;
    void EndCompanions();

    const std::wstring& Folder() const { return m_folder.Path(); }
    HMODULE PlugInModule() const { return m_dll.Module(); }
    IPrintOemUI2* Object() const { return m_object; }

  private:
    ScratchRegistry m_registry;
    TemporaryFolder m_folder;
    PlugInDll m_dll;
    IPrintOemUI2* m_object;
    std::vector<std::wstring> m_installed;
};

}  // namespace kzp::test

// What the actions tell: lines of the installer's log, and message boxes for the few failures that are shown.
// Also the way to read what the installer passes.
#pragma once

#include <windows.h>

#include <msi.h>

#include <string>

namespace kzp {

// Sends `text` to the installer's log as an information message. The texts are formats, in which "[1]" stands
// for an error code. Nothing is sent when the installer hands out no record.
void LogInstallMessage(MSIHANDLE hInstall, const wchar_t* text);

// The same with `code` in place of "[1]"; the installer puts "Info <code>." before the line.
void LogInstallError(MSIHANDLE hInstall, const wchar_t* text, DWORD code);

// Loads a text of the resource module beside this DLL, cut to `capacity` characters with the terminator.
// Answers its length, 0 when the module or the text is missing.
int LoadInstallerString(UINT id, wchar_t* buffer, int capacity);

// A failure that is shown: the text's number in the resource module, and what is shown without that module.
struct InstallFailure {
    UINT textId;
    const wchar_t* builtInText;
};

// Shows the failure in a box with an OK button and no owner, and waits until it is pressed. Caption and text
// come from the resource module; when either is missing there, both are the built-in ones.
void ShowInstallFailure(const InstallFailure& failure);

// MsiGetPropertyW: fills `buffer`, of `characters` with the terminator, and answers a Win32 code.
// `characters` becomes the length without it.
UINT GetInstallerProperty(MSIHANDLE hInstall, const wchar_t* name, wchar_t* buffer, DWORD& characters);

// The whole text of a property, whatever its length; empty when it is missing or cannot be read.
std::wstring GetInstallerProperty(MSIHANDLE hInstall, const wchar_t* name);

}  // namespace kzp

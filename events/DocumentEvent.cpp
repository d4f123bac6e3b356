#include "events/DocumentEvent.h"

#include <iterator>

#include "core/DebugTrace.h"
#include "core/InteractionApp.h"
#include "driverkit/printoem.h"
#include "events/Companions.h"
#include "settings/SettingsStore.h"
#include "support/Names.h"

namespace kzp {

namespace {

// The filter asks for the two post events although nothing is done on them; this is kept.
constexpr DWORD kWantedEvents[] = {DOCUMENTEVENT_STARTDOCPOST, DOCUMENTEVENT_ENDDOCPOST,
                                   DOCUMENTEVENT_STARTDOC};

// Processes that print on behalf of an application: the 32-bit print host and the spooler.
constexpr const wchar_t* kPrintHosts[] = {L"SPLWOW64.EXE", L"SPOOLSV.EXE"};

bool AnswerFilter(DOCEVENT_FILTER* filter) {
    if (!filter || filter->cElementsAllocated < std::size(kWantedEvents))
        return false;
    filter->cElementsReturned = std::size(kWantedEvents);
    for (size_t i = 0; i < std::size(kWantedEvents); ++i)
        filter->aDocEventCall[i] = kWantedEvents[i];
    return true;
}

DWORD SessionOf(DWORD pid) {
    DWORD session = 0;
    return ProcessIdToSessionId(pid, &session) ? session : WTSGetActiveConsoleSessionId();
}

// 0 when it is not the application itself that prints, or when that cannot be told.
DWORD ApplicationId(DWORD pid) {
    wchar_t name[MAX_PATH] = {};
    if (!GetProcessBaseName(pid, name))
        return 0;
    for (const wchar_t* const host : kPrintHosts) {
        if (CompareNames(name, host) == 0)
            return 0;
    }
    return pid;
}

// The beginnings of "YES" count as well as the word, the empty text included; this is kept. A user for whom
// nothing was stored yet is shown nothing, though the read leaves the empty text behind.
bool UserWantsViewer() {
    std::wstring choice;
    bool existed = false;
    return ReadStringSetting(kLaunchView, choice, &existed) == 1 && existed && IsPrefixOfYes(choice);
}

void OnStartDocument() {
    // The companions get no arguments; they learn from these two values who prints.
    const DWORD pid = GetCurrentProcessId();
    (void)WriteDwordSetting(kSessionId, SessionOf(pid));
    (void)WriteDwordSetting(kApplicationId, ApplicationId(pid));
    if (!UsesInteractionApp())
        return;
    (void)LaunchCompanion(kInteractionAppName);
    if (UserWantsViewer() && FindViewer(nullptr))
        (void)LaunchCompanion(kViewerLauncherName);
}

}  // namespace

HRESULT DocumentEvent(HANDLE, HDC, INT iEsc, ULONG, PVOID, ULONG, PVOID pvOut, PINT piResult) {
    if (piResult)
        *piResult = DOCUMENTEVENT_SUCCESS;
    if (iEsc == DOCUMENTEVENT_STARTDOC) {
        // Whatever fails, memory included, the document is printed.
        (void)GuardOperation(L"DocumentEvent", L"events/DocumentEvent", __LINE__, [] {
            OnStartDocument();
            return S_OK;
        });
    } else if (iEsc == DOCUMENTEVENT_QUERYFILTER && !AnswerFilter(static_cast<DOCEVENT_FILTER*>(pvOut)) &&
               piResult) {
        *piResult = DOCUMENTEVENT_UNSUPPORTED;
    }
    return S_OK;
}

}  // namespace kzp

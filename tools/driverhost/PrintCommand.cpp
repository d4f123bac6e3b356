#include "tools/driverhost/PrintCommand.h"

#include <windows.h>

#include <tlhelp32.h>

#include <algorithm>
#include <functional>
#include <map>

#include "tools/driverhost/DocumentSession.h"
#include "tools/driverhost/State.h"
#include "tools/driverhost/Text.h"

namespace driverhost {

namespace {

// The order in which a one-page document brings them.
struct Event {
    INT number;
    const wchar_t* name;
};
constexpr Event kEvents[] = {
    {DOCUMENTEVENT_CREATEDCPRE, L"CREATEDCPRE"}, {DOCUMENTEVENT_CREATEDCPOST, L"CREATEDCPOST"},
    {DOCUMENTEVENT_STARTDOC, L"STARTDOC"},       {DOCUMENTEVENT_STARTDOCPOST, L"STARTDOCPOST"},
    {DOCUMENTEVENT_STARTPAGE, L"STARTPAGE"},     {DOCUMENTEVENT_ENDPAGE, L"ENDPAGE"},
    {DOCUMENTEVENT_ENDDOC, L"ENDDOC"},           {DOCUMENTEVENT_ENDDOCPOST, L"ENDDOCPOST"},
    {DOCUMENTEVENT_DELETEDC, L"DELETEDC"},
};

// Room for every event behind the filter's own first entry.
struct EventFilter {
    DOCEVENT_FILTER head;
    DWORD more[DOCUMENTEVENT_QUERYFILTER];
};

// The device context of a document that is spooled: a metafile records what is drawn.
class SpooledContext {
  public:
    SpooledContext() : m_context(CreateEnhMetaFileW(nullptr, nullptr, nullptr, nullptr)) {}
    ~SpooledContext() { DeleteEnhMetaFile(CloseEnhMetaFile(m_context)); }
    SpooledContext(const SpooledContext&) = delete;
    SpooledContext& operator=(const SpooledContext&) = delete;
    HDC Get() const { return m_context; }

  private:
    HDC m_context;
};

const wchar_t* NameOf(INT number) {
    for (const Event& event : kEvents) {
        if (event.number == number)
            return event.name;
    }
    return number == DOCUMENTEVENT_QUERYFILTER ? L"QUERYFILTER" : L"?";
}

constexpr const wchar_t* kCompanions[] = {L"KzpWriterInteraction.exe", L"KZPAppLauncher.exe",
                                          L"PlansightApp.exe"};

using Processes = std::map<DWORD, std::wstring>;  // companions by process id

Processes RunningCompanions() {
    Processes found;
    const kzp::UniqueFile snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    PROCESSENTRY32W process = {};
    process.dwSize = sizeof process;
    for (BOOL more = snapshot && Process32FirstW(snapshot.Get(), &process); more;
         more = Process32NextW(snapshot.Get(), &process)) {
        for (const wchar_t* const companion : kCompanions) {
            if (_wcsicmp(companion, process.szExeFile) == 0)
                found[process.th32ProcessID] = companion;
        }
    }
    return found;
}

void ReportCompanions(const Processes& before, DWORD waitMilliseconds) {
    Processes seen;
    const ULONGLONG end = GetTickCount64() + waitMilliseconds;
    do {
        seen.merge(RunningCompanions());
        Sleep(20);
    } while (GetTickCount64() < end);
    Say(L"[companions]");
    for (const wchar_t* const companion : kCompanions) {
        std::wstring state = L"not started";
        for (const auto& [pid, name] : before) {
            if (name == companion)
                state = Format(L"was running already (process %lu)", pid);
        }
        for (const auto& [pid, name] : seen) {
            if (name == companion && !before.contains(pid))
                state = Format(L"started (process %lu)", pid);
        }
        Say(Format(L"  %-26ls %ls", companion, state.c_str()));
    }
}

using Call = std::function<HRESULT(IPrintOemUI2*)>;

PrintOutcome Print(const std::function<HRESULT(const Call&)>& plugIn, HANDLE printer,
                   const std::wstring& title) {
    PrintOutcome outcome;
    HDC context = nullptr;
    const auto tell = [&](INT event, ULONG bytesIn, void* in, ULONG bytesOut, void* out) {
        INT answer = -1;
        const HRESULT result = plugIn([&](IPrintOemUI2* object) {
            return object->DocumentEvent(printer, context, event, bytesIn, in, bytesOut, out, &answer);
        });
        outcome.calls.push_back({event, result, answer});
        return answer;
    };
    EventFilter filter = {};
    filter.head.cbSize = sizeof filter;
    filter.head.cElementsAllocated = 1 + DOCUMENTEVENT_QUERYFILTER;
    if (tell(DOCUMENTEVENT_QUERYFILTER, 0, nullptr, sizeof filter, &filter) == DOCUMENTEVENT_SUCCESS) {
        const UINT returned = std::min(filter.head.cElementsReturned, filter.head.cElementsAllocated);
        outcome.filter.assign(filter.head.aDocEventCall, filter.head.aDocEventCall + returned);
    } else {  // a plug-in without a filter hears everything
        for (const Event& event : kEvents)
            outcome.filter.push_back(static_cast<DWORD>(event.number));
    }

    DOCEVENT_CREATEDCPRE creation = {nullptr, const_cast<PWSTR>(kDefaultPrinter), nullptr, FALSE};
    PDEVMODEW chosen = nullptr;
    tell(DOCUMENTEVENT_CREATEDCPRE, sizeof creation, &creation, sizeof chosen, &chosen);
    const SpooledContext spooled;
    context = spooled.Get();
    DOCINFOW document = {};
    document.cbSize = sizeof document;
    document.lpszDocName = title.c_str();
    const DOCINFOW* start = &document;
    LONG job = 1;
    for (const Event& event : kEvents) {
        if (event.number == DOCUMENTEVENT_CREATEDCPRE ||
            std::ranges::find(outcome.filter, static_cast<DWORD>(event.number)) == outcome.filter.end())
            continue;
        switch (event.number) {
            case DOCUMENTEVENT_STARTDOC:
                // The event passes the pointer, not what it points to.
                // NOLINTNEXTLINE(bugprone-sizeof-expression)
                tell(event.number, sizeof start, &start, 0, nullptr);
                break;
            case DOCUMENTEVENT_STARTDOCPOST:
                tell(event.number, sizeof job, &job, 0, nullptr);
                break;
            default:
                tell(event.number, 0, nullptr, 0, nullptr);
                break;
        }
    }
    return outcome;
}

}  // namespace

PrintOutcome PrintDocument(IPrintOemUI2* plugIn, HANDLE printer, const std::wstring& title) {
    return Print([&](const Call& call) { return call(plugIn); }, printer, title);
}

PrintOutcome PrintDocument(const PlugIn& plugIn, HANDLE printer, const std::wstring& title) {
    return Print([&](const Call& call) { return call(PlugIn(plugIn.Path()).CreateObject().Get()); }, printer,
                 title);
}

void RunPrintCommand(const PlugIn& plugIn, const std::wstring& printerName, DWORD waitMilliseconds) {
    HANDLE opened = nullptr;
    OpenPrinterW(const_cast<PWSTR>(printerName.c_str()), &opened, nullptr);
    const kzp::UniquePrinter printer(opened);
    const Processes before = RunningCompanions();
    Say(Format(L"process %lu prints", GetCurrentProcessId()));
    const PrintOutcome outcome = PrintDocument(plugIn, printer.Get(), L"Driver host test page");
    for (const DocumentEventCall& call : outcome.calls)
        Say(Format(L"  %-14ls answers 0x%08lX, result %d", NameOf(call.event), call.result, call.answer));
    State settings = SettingsState();
    std::erase_if(settings,
                  [](const StateRow& row) { return row.name != L"SessionId" && row.name != L"ID"; });
    PrintState(settings);
    ReportCompanions(before, waitMilliseconds);
}

}  // namespace driverhost

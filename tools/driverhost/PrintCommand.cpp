#include "tools/driverhost/PrintCommand.h"

#include <windows.h>

#include <tlhelp32.h>

#include <algorithm>

#include "support/Names.h"
#include "support/Spooler.h"
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
    {DOCUMENTEVENT_QUERYFILTER, L"QUERYFILTER"},   {DOCUMENTEVENT_CREATEDCPRE, L"CREATEDCPRE"},
    {DOCUMENTEVENT_CREATEDCPOST, L"CREATEDCPOST"}, {DOCUMENTEVENT_STARTDOC, L"STARTDOC"},
    {DOCUMENTEVENT_STARTDOCPOST, L"STARTDOCPOST"}, {DOCUMENTEVENT_STARTPAGE, L"STARTPAGE"},
    {DOCUMENTEVENT_ENDPAGE, L"ENDPAGE"},           {DOCUMENTEVENT_ENDDOC, L"ENDDOC"},
    {DOCUMENTEVENT_ENDDOCPOST, L"ENDDOCPOST"},     {DOCUMENTEVENT_DELETEDC, L"DELETEDC"},
};

// Room for every event behind the filter's own first entry.
struct EventFilter {
    DOCEVENT_FILTER head;
    DWORD more[DOCUMENTEVENT_QUERYFILTER];
};

// The device context of a document that is spooled: a metafile records what is drawn.
struct SpooledContextTraits {
    using Type = HDC;
    static Type Empty() { return nullptr; }
    static void Close(Type context) { DeleteEnhMetaFile(CloseEnhMetaFile(context)); }
};

// What printing leaves behind: the user's settings, and the companions by process.
State PrintingState() {
    State state = SettingsState();
    const wchar_t* const companions[] = {L"KzpWriterInteraction.exe", L"KZPAppLauncher.exe",
                                         L"PlansightApp.exe"};
    const kzp::UniqueFile snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    PROCESSENTRY32W process = {};
    process.dwSize = sizeof process;
    for (BOOL more = Process32FirstW(snapshot.Get(), &process); more;
         more = Process32NextW(snapshot.Get(), &process)) {
        for (const wchar_t* const companion : companions) {
            if (kzp::CompareNames(companion, process.szExeFile) == 0)
                state[Format(L"companions: %ls", companion)] = Format(L"process %lu", process.th32ProcessID);
        }
    }
    return state;
}

}  // namespace

PrintOutcome PrintDocument(const PlugIn& plugIn, HANDLE printer, const std::wstring& title) {
    PrintOutcome outcome;
    kzp::UniqueHandle<SpooledContextTraits> context;
    const auto tell = [&](INT event, ULONG bytesIn, void* in, ULONG bytesOut, void* out) {
        INT answer = -1;
        const HRESULT result =
            PlugIn(plugIn.Path())
                .CreateObject()
                ->DocumentEvent(printer, context.Get(), event, bytesIn, in, bytesOut, out, &answer);
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
    // The answer is a pointer, too. NOLINTNEXTLINE(bugprone-sizeof-expression)
    tell(DOCUMENTEVENT_CREATEDCPRE, sizeof creation, &creation, sizeof chosen, &chosen);
    context.Reset(CreateEnhMetaFileW(nullptr, nullptr, nullptr, nullptr));
    const DOCINFOW document = {.cbSize = sizeof document, .lpszDocName = title.c_str()};
    const DOCINFOW* start = &document;
    LONG job = 1;
    for (const Event& event : kEvents) {
        if (event.number == DOCUMENTEVENT_QUERYFILTER || event.number == DOCUMENTEVENT_CREATEDCPRE ||
            std::ranges::find(outcome.filter, static_cast<DWORD>(event.number)) == outcome.filter.end())
            continue;
        if (event.number == DOCUMENTEVENT_STARTDOC)
            // The event passes the pointer, not what it points to.
            // NOLINTNEXTLINE(bugprone-sizeof-expression)
            tell(event.number, sizeof start, &start, 0, nullptr);
        else if (event.number == DOCUMENTEVENT_STARTDOCPOST)
            tell(event.number, sizeof job, &job, 0, nullptr);
        else
            tell(event.number, 0, nullptr, 0, nullptr);
    }
    return outcome;
}

void RunPrintCommand(const PlugIn& plugIn, const std::wstring& printerName) {
    constexpr DWORD kCompanionsTake = 1000;  // milliseconds
    const kzp::UniquePrinter printer = kzp::OpenPrinterWithAllAccess(printerName.c_str());
    const State before = PrintingState();
    Say(Format(L"process %lu prints", GetCurrentProcessId()));
    for (const auto& call : PrintDocument(plugIn, printer.Get(), L"Driver host test page").calls)
        Say(Format(L"  %-14ls answers 0x%08lX, result %d",
                   std::ranges::find(kEvents, call.event, &Event::number)->name, call.result, call.answer));
    Sleep(kCompanionsTake);
    PrintChanges(before, PrintingState());
}

}  // namespace driverhost

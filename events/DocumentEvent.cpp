#include "events/DocumentEvent.h"

#include <iterator>

#include "driverkit/printoem.h"

namespace kzp {

namespace {

// The filter asks for the two post events although nothing is done on them; this is kept.
constexpr DWORD kWantedEvents[] = {DOCUMENTEVENT_STARTDOCPOST, DOCUMENTEVENT_ENDDOCPOST,
                                   DOCUMENTEVENT_STARTDOC};

bool AnswerFilter(DOCEVENT_FILTER* filter) {
    if (!filter || filter->cElementsAllocated < std::size(kWantedEvents))
        return false;
    filter->cElementsReturned = std::size(kWantedEvents);
    for (size_t i = 0; i < std::size(kWantedEvents); ++i)
        filter->aDocEventCall[i] = kWantedEvents[i];
    return true;
}

}  // namespace

HRESULT DocumentEvent(HANDLE, HDC, INT iEsc, ULONG, PVOID, ULONG, PVOID pvOut, PINT piResult) {
    if (piResult)
        *piResult = DOCUMENTEVENT_SUCCESS;
    if (iEsc == DOCUMENTEVENT_QUERYFILTER && !AnswerFilter(static_cast<DOCEVENT_FILTER*>(pvOut)) && piResult)
        *piResult = DOCUMENTEVENT_UNSUPPORTED;
    return S_OK;
}

}  // namespace kzp

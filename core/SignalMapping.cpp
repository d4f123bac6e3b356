#include "core/SignalMapping.h"

namespace kzp {

SignalMapping::SignalMapping(bool create, bool ownsHandle)
    : bCreate(create), bOwnsHandle(ownsHandle), hMapping(nullptr), pView(nullptr) {
    if (bCreate) {
        hMapping = CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
                                      static_cast<DWORD>(kSignalMappingBytes), kSignalMappingName);
    } else {
        hMapping = OpenFileMappingW(FILE_MAP_ALL_ACCESS, FALSE, kSignalMappingName);
    }
    if (!hMapping)
        return;
    pView = MapViewOfFile(hMapping, FILE_MAP_ALL_ACCESS, 0, 0, kSignalMappingBytes);
    // Without a view the handle is closed but its value kept: kept as it has always been.
    if (!pView)
        CloseHandle(hMapping);
}

SignalMapping::~SignalMapping() {
    if (pView)
        UnmapViewOfFile(pView);
    if (hMapping && bOwnsHandle)
        CloseHandle(hMapping);
}

}  // namespace kzp

// What the pure sources know of the driver kit: the head of a private record, and where a sheet's record is.
#pragma once

#include <windows.h>

struct OEM_DMEXTRAHEADER {
    DWORD dwSize;
    DWORD dwSignature;
    DWORD dwVersion;
};

struct OEMCUIPPARAM {
    void* pOEMDM;
};
using POEMCUIPPARAM = OEMCUIPPARAM*;

struct PROPSHEETUI_INFO {};

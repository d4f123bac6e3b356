#include "core/KZPPrivateDevMode.h"

#include <algorithm>
#include <cstring>

namespace kzp {

namespace {

DWORD DwordAt(const void* block, size_t offset) {
    DWORD value;
    std::memcpy(&value, static_cast<const BYTE*>(block) + offset, sizeof value);
    return value;
}

// A block too short to hold a signature belongs to nobody.
bool HasSignature(const void* block, DWORD signature) {
    constexpr size_t offset = offsetof(OEM_DMEXTRAHEADER, dwSignature);
    return DwordAt(block, offsetof(OEM_DMEXTRAHEADER, dwSize)) >= offset + sizeof(DWORD) &&
           DwordAt(block, offset) == signature;
}

}  // namespace

void KZPPrivateDevMode::SetDefaultHeader() {
    dmOEMExtra.dwSize = sizeof(KZPPrivateDevMode);
    dmOEMExtra.dwSignature = kWriterSignature;
    dmOEMExtra.dwVersion = kWriterVersion;
    dwOptionSel1 = 0;
    dwOptionSel2 = 0;
}

void ConvertFrom(const void* in, KZPPrivateDevMode* out) {
    if (!in || !out)
        return;
    // The two records are compared with each other, not with our own signature.
    if (!HasSignature(in, out->dmOEMExtra.dwSignature)) {
        out->SetDefaultHeader();
        return;
    }
    const DWORD inSize = DwordAt(in, offsetof(OEM_DMEXTRAHEADER, dwSize));
    const DWORD outSize = out->dmOEMExtra.dwSize;
    out->dwOptionSel1 = 0;
    out->dwOptionSel2 = 0;
    // Both sizes come from outside; a record of a later, longer format is taken as far as ours reaches.
    std::memmove(out, in, std::min<size_t>({outSize, inSize, sizeof(KZPPrivateDevMode)}));
    out->dmOEMExtra.dwSize = sizeof(KZPPrivateDevMode);
    out->dmOEMExtra.dwVersion = kWriterVersion;
}

}  // namespace kzp

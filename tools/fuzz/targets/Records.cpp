// Device-mode records of any content: blocks exactly as long as they state.
#include <memory>

#include "core/KZPPrivateDevMode.h"
#include "tools/fuzz/Input.h"

using namespace kzp;
using kzp::fuzz::Expect;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    KZPPrivateDevMode out;
    std::memset(&out, 0xEE, sizeof out);
    out.dmOEMExtra = input.Take<OEM_DMEXTRAHEADER>();
    const DWORD signature = out.dmOEMExtra.dwSignature;
    const bool same = input.Take<std::uint8_t>() % 4 != 0;

    // A block tells its size in its first four bytes; one that states more than a record must hold a record.
    DWORD stated = input.Take<DWORD>();
    if (input.Take<std::uint8_t>() % 8 != 0)
        stated %= 2 * sizeof(KZPPrivateDevMode);
    const size_t held = std::clamp<size_t>(stated, sizeof stated, sizeof(KZPPrivateDevMode));
    const std::unique_ptr<BYTE[]> in(new BYTE[held]);
    std::memcpy(in.get(), &stated, sizeof stated);
    for (size_t at = sizeof stated; at < held; ++at)
        in[at] = input.Take<BYTE>();
    if (same && held >= 8)
        std::memcpy(in.get() + 4, &signature, sizeof signature);

    ConvertFrom(in.get(), &out);
    Expect(out.dmOEMExtra.dwSize == sizeof out && out.dmOEMExtra.dwVersion == kWriterVersion,
           "a current header");
    Expect(out.dmOEMExtra.dwSignature == signature || out.dmOEMExtra.dwSignature == kWriterSignature,
           "a signature that was there or ours");
    if (held < sizeof out)
        Expect(out.reserved[sizeof out.reserved - 1] == 0xEE, "nothing behind what the block holds");
    return 0;
}

// Memory that ends where an inaccessible page begins: one byte read or written too many is a crash.
#pragma once

#include <windows.h>

namespace kzp::test {

class EdgeBlock {
  public:
    explicit EdgeBlock(size_t bytes) : m_room((bytes + kPage - 1) / kPage * kPage), m_bytes(bytes) {
        m_pages = static_cast<BYTE*>(
            VirtualAlloc(nullptr, m_room + kPage, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
        DWORD old = 0;
        VirtualProtect(m_pages + m_room, kPage, PAGE_NOACCESS, &old);
    }
    ~EdgeBlock() { VirtualFree(m_pages, 0, MEM_RELEASE); }
    EdgeBlock(const EdgeBlock&) = delete;
    EdgeBlock& operator=(const EdgeBlock&) = delete;

    BYTE* Data() const { return Last(m_bytes); }
    // The last bytes of the block, for a shorter one at the same edge.
    BYTE* Last(size_t bytes) const { return m_pages + m_room - bytes; }

  private:
    static constexpr size_t kPage = 4096;
    size_t m_room;
    size_t m_bytes;
    BYTE* m_pages;
};

}  // namespace kzp::test

// Memory of a session of the driver's user interface. What a plug-in is shown lies in pages of its own; once
// the session is over they are inaccessible and their addresses serve nothing else, so that a late touch
// faults at once.
#pragma once

#include <windows.h>

#include <new>
#include <vector>

namespace driverhost {

template <class T>
struct SessionPages {
    using value_type = T;
    SessionPages() = default;
    template <class U>
    // As an allocator is rebound: NOLINTNEXTLINE(google-explicit-constructor)
    SessionPages(const SessionPages<U>&) {}  // cppcheck-suppress noExplicitConstructor

    T* allocate(size_t count) {
        void* const pages =
            VirtualAlloc(nullptr, count * sizeof(T), MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
        if (!pages)
            throw std::bad_alloc();
        return static_cast<T*>(pages);
    }
    void deallocate(T* pages, size_t count) { VirtualFree(pages, count * sizeof(T), MEM_DECOMMIT); }
    template <class U>
    bool operator==(const SessionPages<U>&) const {
        return true;
    }
};

template <class T>
using SessionVector = std::vector<T, SessionPages<T>>;

}  // namespace driverhost

// What of the C++ run-time's own machinery the plug-in does without, with GCC 12 to 14. Every program that
// prints maps the DLL, and these pieces are more than half of what the run-time would add to it. The linker
// takes a piece of the library only for a name that it has not met yet, so what stands here keeps the
// library's own out; should another release bring it in all the same, the build ends in
// cmake/CheckRunTime.cmake or with a name that is defined twice.
#include <windows.h>

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <iterator>
#include <new>
#include <string>

#include <bits/functexcept.h>
#include <cxxabi.h>
#include <unwind.h>

// The names are the run-time's own.
// NOLINTBEGIN(bugprone-reserved-identifier)

// Its report of an uncaught exception brings 70 KB of name demangler along, and writes to a console that no
// printing application has. An uncaught exception ends the process all the same.
namespace __gnu_cxx {

void __verbose_terminate_handler() {
    std::abort();
}

}  // namespace __gnu_cxx

// Its functions that throw for the containers stand in one object file with everything that the library ever
// throws, streams and locales included: 60 KB. Containers here fail for one reason, so one exception serves.
namespace std {

void __throw_length_error(const char*) {
    throw bad_alloc();
}

void __throw_logic_error(const char*) {
    throw bad_alloc();
}

void __throw_out_of_range_fmt(const char*, ...) {
    throw bad_alloc();
}

void __throw_bad_alloc() {
    throw bad_alloc();
}

void __throw_bad_array_new_length() {
    throw bad_alloc();
}

}  // namespace std

// What std::wstring needs when a text is replaced by a part of itself. From GCC 13 on it is not compiled
// where it is used but taken from the library, where it stands in one object file with every other member: 20
// KB. This is the library's template, compiled here.
#if _GLIBCXX_RELEASE >= 13
template void std::basic_string<wchar_t>::_M_replace_cold(wchar_t*, size_type, const wchar_t*,
                                                          const size_type, const size_type);
#endif

// Its reserve for exceptions thrown when memory is short is taken while the DLL loads, 72 KB and a semaphore
// in every process that prints, and not given back when the DLL goes. This one is plain data, and smaller:
// what is thrown here is small and caught at once. Nothing else gives out or takes back such blocks, but for
// std::exception_ptr, which is not used.
namespace {

// The library's record in front of the thrown object, with room to spare.
constexpr std::size_t kRecordBytes = 256;
static_assert(kRecordBytes >= 16 + 80 + sizeof(_Unwind_Exception));

constexpr std::size_t kReservedObjectBytes = 64;

struct alignas(_Unwind_Exception) ReservedPlace {
    std::byte bytes[kRecordBytes + kReservedObjectBytes];
};
constinit ReservedPlace g_places[4] = {};
constinit std::atomic<bool> g_taken[std::size(g_places)] = {};

void* TakeReservedPlace(std::size_t objectBytes) {
    constexpr int kTries = 1000;
    for (int tries = 0; objectBytes <= kReservedObjectBytes && tries < kTries; ++tries) {
        for (std::size_t place = 0; place < std::size(g_places); ++place) {
            if (!g_taken[place].exchange(true))
                return &g_places[place];
        }
        Sleep(1);  // until another thread has caught its own
    }
    return nullptr;
}

bool GiveBackReservedPlace(const void* block) {
    for (std::size_t place = 0; place < std::size(g_places); ++place) {
        if (block == &g_places[place]) {
            g_taken[place] = false;
            return true;
        }
    }
    return false;
}

}  // namespace

// Its record of what is being thrown and caught in a thread comes from the heap at the thread's first
// exception, and the process ends where the heap has nothing left, which is when something is thrown here; a
// thread-local place and a lock stay when the DLL goes. These records are plain data, too: a thread has one
// from its throw to its catch.
namespace __cxxabiv1 {

// As the library's own functions take it apart.
struct __cxa_eh_globals {
    void* caughtExceptions;
    unsigned int uncaughtExceptions;
};

}  // namespace __cxxabiv1

namespace {

struct ThreadRecord {
    std::atomic<DWORD> thread = 0;  // 0: free
    __cxxabiv1::__cxa_eh_globals globals = {};
};
constinit ThreadRecord g_records[16];

// Takes a record of `owner` over; null when it has none.
ThreadRecord* TakeRecord(DWORD owner, DWORD thread) {
    for (ThreadRecord& record : g_records) {
        DWORD expected = owner;
        if (record.thread.compare_exchange_strong(expected, thread))
            return &record;
    }
    return nullptr;
}

void GiveBackRecord() {
    const DWORD thread = GetCurrentThreadId();
    ThreadRecord* const record = TakeRecord(thread, thread);
    if (record && !record->globals.caughtExceptions && record->globals.uncaughtExceptions == 0)
        record->thread = 0;
}

}  // namespace

namespace __cxxabiv1 {

__cxa_eh_globals* __cxa_get_globals() noexcept {
    const DWORD thread = GetCurrentThreadId();
    for (;;) {
        for (const DWORD owner : {thread, DWORD{0}}) {
            if (ThreadRecord* const record = TakeRecord(owner, thread))
                return &record->globals;
        }
        Sleep(1);  // until one of the others has caught its own
    }
}

__cxa_eh_globals* __cxa_get_globals_fast() noexcept {
    return __cxa_get_globals();
}

void* __cxa_allocate_exception(std::size_t objectBytes) noexcept {
    void* block = std::malloc(kRecordBytes + objectBytes);
    if (!block)
        block = TakeReservedPlace(objectBytes);
    if (!block)
        std::terminate();
    std::memset(block, 0, kRecordBytes);
    return static_cast<std::byte*>(block) + kRecordBytes;
}

void __cxa_free_exception(void* object) noexcept {
    void* const block = static_cast<std::byte*>(object) - kRecordBytes;
    if (!GiveBackReservedPlace(block))
        std::free(block);
    GiveBackRecord();
}

}  // namespace __cxxabiv1

// NOLINTEND(bugprone-reserved-identifier)

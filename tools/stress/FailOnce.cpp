#include "tools/stress/FailOnce.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <iterator>

namespace stress {

namespace {

constexpr ULONG_PTR kMinusOne = ~ULONG_PTR{0};

struct Refusal {
    const char* function;
    ULONG_PTR answer;
};

// What is not listed answers 0: FALSE, a null handle, no characters. Functions without a result do nothing.
constexpr Refusal kRefusals[] = {
    {"CreateFileW", kMinusOne},
    {"FindFirstFileW", kMinusOne},
    {"CreateToolhelp32Snapshot", kMinusOne},
    {"SendMessageW", kMinusOne},  // CB_ERR, LB_ERR
    {"SendDlgItemMessageW", kMinusOne},
    {"_vsnwprintf", kMinusOne},
    {"_wchdir", kMinusOne},
    {"_fcvt_s", ERANGE},
    {"GetPrinterDataW", ERROR_NOT_ENOUGH_MEMORY},
    {"SetPrinterDataW", ERROR_NOT_ENOUGH_MEMORY},
    {"RegCloseKey", ERROR_NOT_ENOUGH_MEMORY},
    {"RegCreateKeyExW", ERROR_NOT_ENOUGH_MEMORY},
    {"RegOpenKeyExW", ERROR_NOT_ENOUGH_MEMORY},
    {"RegQueryValueExW", ERROR_NOT_ENOUGH_MEMORY},
    {"RegSetValueExW", ERROR_NOT_ENOUGH_MEMORY},
};

constexpr const char* kFallible[] = {"malloc", "calloc", "realloc", "_vsnwprintf", "_wchdir", "_fcvt_s"};

struct Spared {
    const char* function;
    const char* why;
};

constexpr Spared kSpared[] = {
    {"GetLastError", "cannot fail"},
    {"SetLastError", "cannot fail"},
    {"GetCurrentProcessId", "cannot fail"},
    {"GetCurrentThreadId", "cannot fail"},
    {"GetProcessHeap", "cannot fail"},
    {"lstrcmpiW", "compares"},
    {"wsprintfA", "formats one number"},
    {"wsprintfW", "formats one number"},
    {"Sleep", "cannot fail"},
    {"RaiseException", "how the run-time throws"},
    {"RtlCaptureContext", "how the run-time throws"},
    {"RtlLookupFunctionEntry", "how the run-time throws"},
    {"RtlUnwindEx", "how the run-time throws"},
    {"RtlVirtualUnwind", "how the run-time throws"},
    {"VirtualProtect", "the run-time's start"},
    {"VirtualQuery", "the run-time's start"},
    {"EnterCriticalSection", "the run-time's locks"},
    {"LeaveCriticalSection", "the run-time's locks"},
    {"InitializeCriticalSection", "the run-time's locks"},
    {"DeleteCriticalSection", "the run-time's locks"},
    {"CreateSemaphoreW", "the run-time's locks"},
    {"ReleaseSemaphore", "the run-time's locks"},
    {"WaitForSingleObject", "the run-time's locks"},
    {"TlsAlloc", "the run-time's thread data"},
    {"TlsFree", "the run-time's thread data"},
    {"TlsGetValue", "the run-time's thread data"},
    {"TlsSetValue", "the run-time's thread data"},
};

}  // namespace

const char* WhySpared(const Import& import) {
    const auto named = std::find_if(std::begin(kSpared), std::end(kSpared),
                                    [&](const Spared& spared) { return import.function == spared.function; });
    if (named != std::end(kSpared))
        return named->why;
    if (_stricmp(import.dll.c_str(), "msvcrt.dll") != 0)
        return nullptr;
    const bool fallible = std::any_of(std::begin(kFallible), std::end(kFallible),
                                      [&](const char* function) { return import.function == function; });
    return fallible ? nullptr : "works on memory alone";
}

// Code that counts the call, and goes on to the function or to Refuse, with the caller's frame as it is:
// registers for arguments are left alone.
struct FailOnce::Thunk {
    BYTE code[64];
    volatile LONG64 calls;
    LONG64 refused;
    void* original;
    ULONG_PTR answer;
};

FailOnce::FailOnce(HMODULE module, const std::string& function, LONG64 call)
    : m_thunk(static_cast<Thunk*>(
          VirtualAlloc(nullptr, sizeof(Thunk), MEM_RESERVE | MEM_COMMIT, PAGE_EXECUTE_READWRITE))),
      m_patch(module, function.c_str(), m_thunk->code) {
    static_assert(offsetof(Thunk, refused) == offsetof(Thunk, calls) + 8);
    static_assert(offsetof(Thunk, original) == offsetof(Thunk, calls) + 16);
    m_thunk->refused = call;
    m_thunk->original = m_patch.Original<void*>();
    const auto listed = std::find_if(std::begin(kRefusals), std::end(kRefusals),
                                     [&](const Refusal& refusal) { return function == refusal.function; });
    m_thunk->answer = listed == std::end(kRefusals) ? 0 : listed->answer;

    BYTE* at = m_thunk->code;
    const auto emit = [&](std::initializer_list<BYTE> bytes) {
        at = std::copy(bytes.begin(), bytes.end(), at);
    };
    const auto emitAddress = [&](const void* address) {
        std::memcpy(at, &address, sizeof address);
        at += sizeof address;
    };
    const volatile LONG64* const calls = &m_thunk->calls;
    emit({0x49, 0xBA});  // mov r10, calls
    emitAddress(const_cast<const LONG64*>(calls));
    emit({0x41, 0xBB, 0x01, 0x00, 0x00, 0x00});  // mov r11d, 1
    emit({0xF0, 0x4D, 0x0F, 0xC1, 0x1A});        // lock xadd [r10], r11
    emit({0x49, 0xFF, 0xC3});                    // inc r11
    emit({0x4D, 0x3B, 0x5A, 0x08});              // cmp r11, [r10+8]
    emit({0x74, 0x04});                          // je behind the jump
    emit({0x41, 0xFF, 0x62, 0x10});              // jmp [r10+16]
    emit({0x48, 0xB9});                          // mov rcx, thunk
    emitAddress(m_thunk.get());
    emit({0x48, 0xB8});  // mov rax, Refuse
    emitAddress(kzp::test::AddressOf(Refuse));
    emit({0xFF, 0xE0});  // jmp rax
}

ULONG_PTR FailOnce::Refuse(Thunk* thunk) {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return thunk->answer;
}

LONG64 FailOnce::Calls() const {
    return m_thunk->calls;
}

}  // namespace stress

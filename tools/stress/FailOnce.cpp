#include "tools/stress/FailOnce.h"

#include <cstddef>
#include <cstring>
#include <string_view>

namespace kzp::stress {

namespace {

bool IsOneOf(std::string_view list, const std::string& function) {
    return list.find(" " + function + " ") != std::string_view::npos;
}

constexpr std::string_view kAnswerMinusOne =
    " CreateFileW FindFirstFileW CreateToolhelp32Snapshot SendMessageW SendDlgItemMessageW _vsnwprintf "
    "_wchdir ";

// Of the run-time, which works on memory alone, these can fail.
constexpr std::string_view kRunTime = " malloc calloc realloc _vsnwprintf _wchdir _fcvt_s ";

// What cannot fail, the run-time's locks, and how it starts and throws.
constexpr std::string_view kSpared =
    " GetLastError SetLastError GetCurrentProcessId GetCurrentThreadId GetProcessHeap lstrcmpiW wsprintfA "
    "wsprintfW Sleep AcquireSRWLockExclusive ReleaseSRWLockExclusive EnterCriticalSection "
    "LeaveCriticalSection InitializeCriticalSection DeleteCriticalSection "
    "VirtualProtect VirtualQuery RaiseException ";

// Otherwise 0: FALSE, a null handle, no characters. Functions without a result do nothing.
ULONG_PTR AnswerOf(const std::string& function) {
    const bool answersCode =
        function.starts_with("Reg") || function.ends_with("PrinterDataW") || function == "_fcvt_s";
    return IsOneOf(kAnswerMinusOne, function) ? ~ULONG_PTR{0} : answersCode ? ERROR_NOT_ENOUGH_MEMORY : 0;
}

bool IsFallible(const test::Import& import) {
    if (_stricmp(import.dll.c_str(), "msvcrt.dll") == 0)
        return IsOneOf(kRunTime, import.function);
    return !IsOneOf(kSpared, import.function) && !import.function.starts_with("Rtl") &&
           !import.function.starts_with("Tls");
}

}  // namespace

std::vector<std::string> FallibleImports(HMODULE module) {
    std::vector<std::string> functions;
    for (const test::Import& import : test::ImportsOf(module)) {
        if (IsFallible(import))
            functions.push_back(import.function);
    }
    return functions;
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

FailOnce::FailOnce(HMODULE module, const std::string& function, int call)
    : m_thunk(static_cast<Thunk*>(
          VirtualAlloc(nullptr, sizeof(Thunk), MEM_RESERVE | MEM_COMMIT, PAGE_EXECUTE_READWRITE))),
      m_patch(module, function.c_str(), m_thunk->code) {
    static_assert(offsetof(Thunk, calls) == 64 && offsetof(Thunk, refused) == 72 &&
                  offsetof(Thunk, original) == 80);
    m_thunk->refused = call;
    m_thunk->original = m_patch.Original<void*>();
    m_thunk->answer = AnswerOf(function);
    constexpr BYTE kCode[] = {
        0x49, 0xBA, 0,    0,    0,    0,  0, 0, 0, 0,  // mov r10, thunk
        0x41, 0xBB, 1,    0,    0,    0,               // mov r11d, 1
        0xF0, 0x4D, 0x0F, 0xC1, 0x5A, 64,              // lock xadd [r10+calls], r11
        0x49, 0xFF, 0xC3,                              // inc r11
        0x4D, 0x3B, 0x5A, 72,                          // cmp r11, [r10+refused]
        0x74, 0x04,                                    // je behind the jump
        0x41, 0xFF, 0x62, 80,                          // jmp [r10+original]
        0x4C, 0x89, 0xD1,                              // mov rcx, r10
        0x48, 0xB8, 0,    0,    0,    0,  0, 0, 0, 0,  // mov rax, Refuse
        0xFF, 0xE0,                                    // jmp rax
    };
    static_assert(sizeof kCode <= sizeof m_thunk->code);
    const void* const thunk = m_thunk.get();
    const void* const refuse = test::AddressOf(Refuse);
    std::memcpy(m_thunk->code, kCode, sizeof kCode);
    std::memcpy(m_thunk->code + 2, &thunk, sizeof thunk);
    std::memcpy(m_thunk->code + sizeof kCode - 10, &refuse, sizeof refuse);
}

ULONG_PTR FailOnce::Refuse(Thunk* thunk) {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return thunk->answer;
}

int FailOnce::Calls() const {
    return static_cast<int>(m_thunk->calls);
}

}  // namespace kzp::stress

// Ownership of Windows handles: one move-only type, and three facts for each kind of handle.
#pragma once

#include <windows.h>
#include <winspool.h>

#include <utility>

namespace kzp {

// Owns one handle and closes it exactly once. `Traits` names the raw type (`Type`), the empty value
// (`Empty()`), and how to close (`Close(Type)`). Closing keeps the thread's last error, so that cleaning up
// never hides why an earlier call failed.
template <class Traits>
class UniqueHandle {
  public:
    using Type = typename Traits::Type;

    UniqueHandle() = default;
    explicit UniqueHandle(Type handle) : m_handle(handle) {}
    UniqueHandle(UniqueHandle&& other) noexcept : m_handle(other.Release()) {}
    UniqueHandle& operator=(UniqueHandle&& other) noexcept {
        if (this != &other)
            Reset(other.Release());
        return *this;
    }
    ~UniqueHandle() { Reset(); }

    explicit operator bool() const { return m_handle != Traits::Empty(); }
    Type Get() const { return m_handle; }

    // Gives the handle up without closing it.
    [[nodiscard]] Type Release() { return std::exchange(m_handle, Traits::Empty()); }

    void Reset(Type handle = Traits::Empty()) {
        const Type old = std::exchange(m_handle, handle);
        if (old == Traits::Empty())
            return;
        const DWORD lastError = GetLastError();
        Traits::Close(old);
        SetLastError(lastError);
    }

    // For an API that returns the handle through a pointer; whatever was owned is closed first.
    Type* Put() {
        Reset();
        return &m_handle;
    }

  private:
    Type m_handle = Traits::Empty();
};

// Processes, threads, events and mappings: the calls answer null on failure.
struct KernelHandleTraits {
    using Type = HANDLE;
    static Type Empty() { return nullptr; }
    static void Close(Type handle) { CloseHandle(handle); }
};
using UniqueKernelHandle = UniqueHandle<KernelHandleTraits>;

// Files and process snapshots: the calls answer INVALID_HANDLE_VALUE on failure.
struct FileHandleTraits {
    using Type = HANDLE;
    static Type Empty() { return INVALID_HANDLE_VALUE; }
    static void Close(Type handle) { CloseHandle(handle); }
};
using UniqueFile = UniqueHandle<FileHandleTraits>;

struct FindHandleTraits {
    using Type = HANDLE;
    static Type Empty() { return INVALID_HANDLE_VALUE; }
    static void Close(Type handle) { FindClose(handle); }
};
using UniqueFind = UniqueHandle<FindHandleTraits>;

struct ModuleTraits {
    using Type = HMODULE;
    static Type Empty() { return nullptr; }
    static void Close(Type module) { FreeLibrary(module); }
};
using UniqueModule = UniqueHandle<ModuleTraits>;

struct PrinterTraits {
    using Type = HANDLE;
    static Type Empty() { return nullptr; }
    static void Close(Type printer) { ClosePrinter(printer); }
};
using UniquePrinter = UniqueHandle<PrinterTraits>;

struct ServiceTraits {
    using Type = SC_HANDLE;
    static Type Empty() { return nullptr; }
    static void Close(Type service) { CloseServiceHandle(service); }
};
using UniqueService = UniqueHandle<ServiceTraits>;

}  // namespace kzp

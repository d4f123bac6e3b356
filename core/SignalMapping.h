// The named shared-memory object by which the companion application says that it is working on a job.
#pragma once

#include <windows.h>

namespace kzp {

inline constexpr wchar_t kSignalMappingName[] = L"6C2E9A41-0B7D-4F3A-8E15-93D4A2B7C650";
inline constexpr SIZE_T kSignalMappingBytes = 4;

// Owns the mapping and a view of it. Its existence is the signal; nobody reads or writes the 4 bytes. The
// companion creates one, tests open one; the plug-in itself only looks whether it is there (DevMode).
class SignalMapping {
  public:
    // Creates the object or opens the existing one. `ownsHandle` decides whether the destructor closes the
    // handle.
    SignalMapping(bool create, bool ownsHandle);
    ~SignalMapping();
    SignalMapping(const SignalMapping&) = delete;
    SignalMapping& operator=(const SignalMapping&) = delete;

    // True when the object exists and a view of it is mapped.
    bool IsValid() const { return pView != nullptr; }

  private:
    bool bCreate;
    bool bOwnsHandle;
    HANDLE hMapping;
    void* pView;
};

}  // namespace kzp

// A journal of calls in the registry: stand-ins append, tests read back, in whatever processes they run.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace kzp::standins {

// A mutex known to every process under `name`, held while the object lives. Recursive within a thread.
class MachineLock {
  public:
    explicit MachineLock(const wchar_t* name);
    ~MachineLock();
    MachineLock(const MachineLock&) = delete;
    MachineLock& operator=(const MachineLock&) = delete;

  private:
    HANDLE m_mutex;
};

class Journal {
  public:
    // The entries are values of the key `path` below `root`, numbered in the order of their arrival.
    Journal(HKEY root, const wchar_t* path) : m_root(root), m_path(path) {}

    void Start() const;                            // empty
    void Append(const std::wstring& entry) const;  // dropped when none was started
    std::vector<std::wstring> Read() const;        // oldest first
    void Stop() const;                             // and forget it

  private:
    HKEY m_root;
    const wchar_t* m_path;
};

}  // namespace kzp::standins

// Plays campaigns in processes of their own, watches them, and says what became of them.
#pragma once

#include <windows.h>

#include <string>

#include "tools/stress/Campaigns.h"

namespace stress {

struct Outcome {
    LONG64 inputs = 0;
    LONG crashes = 0;
    LONG hangs = 0;
    LONG failures = 0;
    LONG handles = 0, windows = 0, blocks = 0;  // the worst growth of its processes
    double seconds = 0;
    std::wstring figures;

    bool Clean() const {
        return crashes + hangs + failures == 0 && handles <= 0 && windows <= 0 && blocks <= 0;
    }
};

// A crash or hang is told with what reproduces it, and the campaign goes on behind that iteration.
Outcome Watch(const Campaign& campaign, const Plan& plan);

// This program once more, with `arguments`; null when it does not start. The caller closes the handle.
HANDLE StartSelf(const std::wstring& arguments, DWORD* processId = nullptr);

}  // namespace stress

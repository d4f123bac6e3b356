#include "core/DebugTrace.h"

#include <cstdarg>
#include <cwchar>

namespace kzp {

namespace {

constexpr size_t kMaxTraceCharacters = 260;

}  // namespace

bool DebugTrace(const wchar_t* format, ...) {
    if (!format)
        return false;
    // On the stack, so that running out of memory is traced as well.
    wchar_t text[kMaxTraceCharacters + 1];
    va_list arguments;
    va_start(arguments, format);
    // The platform's own run-time, whose %s is a wide text; it leaves a text of full length or more
    // unterminated.
    const int written = _vsnwprintf(text, kMaxTraceCharacters, format, arguments);
    va_end(arguments);
    text[written < 0 ? kMaxTraceCharacters : static_cast<size_t>(written)] = L'\0';

    OutputDebugStringW(text);
    return written >= 0;
}

void TraceException(const wchar_t* operation, const wchar_t* file, int line) {
    DebugTrace(L"%s (EXCEPTION) [%s,%d]\n", operation, file, line);
}

}  // namespace kzp

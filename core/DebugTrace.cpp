#include "core/DebugTrace.h"

#include <cstdarg>
#include <cwchar>
#include <memory>

namespace kzp {

namespace {

constexpr size_t kMaxTraceCharacters = 260;

}  // namespace

bool DebugTrace(const wchar_t* format, ...) {
    if (!format)
        return false;
    const std::unique_ptr<wchar_t[]> text(new (std::nothrow) wchar_t[kMaxTraceCharacters + 1]);
    if (!text)
        return false;

    va_list arguments;
    va_start(arguments, format);
    // The platform's own run-time, whose %s is a wide text; it leaves a text of full length or more
    // unterminated.
    const int written = _vsnwprintf(text.get(), kMaxTraceCharacters, format, arguments);
    va_end(arguments);
    text[written < 0 ? kMaxTraceCharacters : static_cast<size_t>(written)] = L'\0';

    OutputDebugStringW(text.get());
    return written >= 0;
}

void TraceException(const wchar_t* operation, const wchar_t* file, int line) {
    DebugTrace(L"%s (EXCEPTION) [%s,%d]\n", operation, file, line);
}

}  // namespace kzp

// What of the C++ run-time's own machinery the plug-in does without. Every program that prints maps the DLL,
// and these two pieces are half of what the run-time would add to it.
#include <cstdlib>
#include <new>

#include <bits/functexcept.h>

// The names are the run-time's own.
// NOLINTBEGIN(bugprone-reserved-identifier)

// Its report of an uncaught exception brings 70 KB of name demangler along, and writes to a console that no
// printing application has. An uncaught exception ends the process all the same.
namespace __gnu_cxx {

void __verbose_terminate_handler();
void __verbose_terminate_handler() {
    std::abort();
}

}  // namespace __gnu_cxx

// Its functions that throw for the containers stand in one object file with everything that the library ever
// throws, streams and locales included: 60 KB. Containers here fail for one reason, so one exception serves.
// Another release may split these functions differently; then the library's own are taken, which work just as
// well.
#if defined(__GNUC__) && !defined(__clang__) && __GNUC__ == 12
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
#endif

// NOLINTEND(bugprone-reserved-identifier)

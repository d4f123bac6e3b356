// The C++ run-time's report of an uncaught exception brings 70 KB of name demangler along, and writes to a
// console that no printing application has. An uncaught exception ends the process all the same.
#include <cstdlib>

// The name is the run-time's own.
// NOLINTBEGIN(bugprone-reserved-identifier)
namespace __gnu_cxx {

void __verbose_terminate_handler();
void __verbose_terminate_handler() {
    std::abort();
}

}  // namespace __gnu_cxx
// NOLINTEND(bugprone-reserved-identifier)

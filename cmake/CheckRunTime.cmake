# Run after linking with -DMAP=<the linker's map>: support/RunTime.cpp has kept out what it is meant to keep out.
file(STRINGS ${MAP} taken REGEX "libstdc\\+\\+\\.a\\((functexcept|eh_alloc|eh_globals|vterminate|cp-demangle|[^()]*string-inst|[^()]*locale[^()]*|[^()]*ios[^()]*)\\.o\\)")
if(taken)
  string(REGEX MATCHALL "[^()/]+\\.o" taken "${taken}")
  list(REMOVE_DUPLICATES taken)
  list(JOIN taken ", " taken)
  message(FATAL_ERROR "This compiler's run-time brings ${taken} into the plug-in, which every program that prints would "
    "map: support/RunTime.cpp does not replace with it what it replaces with GCC 12 to 14.")
endif()

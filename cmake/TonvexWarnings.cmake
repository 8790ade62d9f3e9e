# One interface target carries the warnings, so that every target of ours has the same.
add_library(tonvex_warnings INTERFACE)
target_compile_options(tonvex_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor
  -Woverloaded-virtual -Wimplicit-fallthrough -Werror)

# Flags of every target. Numbers are part of the product: no contraction into fused
# multiply-adds and no reordering, so that every machine gives the same samples.
add_library(zum_flags INTERFACE)
target_compile_options(zum_flags INTERFACE
  -ffp-contract=off
  -fno-math-errno
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
target_include_directories(zum_flags INTERFACE ${CMAKE_SOURCE_DIR})

# The control pass is spread over many small files; seen as one program it costs a quarter less.
# That takes half a minute a link, so the objects carry plain code too, for what is neither shipped
# nor measured.
set(CMAKE_INTERPROCEDURAL_OPTIMIZATION_RELEASE ON)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  set(CMAKE_CXX_COMPILE_OPTIONS_IPO -flto=auto -ffat-lto-objects)
endif()

# What follows in the calling folder is compiled and linked file by file, and fast.
macro(zum_file_by_file)
  set(CMAKE_INTERPROCEDURAL_OPTIMIZATION_RELEASE OFF)
  add_compile_options($<$<CONFIG:Release>:-O1>)
  add_link_options(-fno-lto)
endmacro()

if(ZUM_SANITIZE)
  add_compile_options(-fsanitize=${ZUM_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${ZUM_SANITIZE})
endif()

# clang checks at compile time what the real-time sanitizer checks at run time: nothing that the
# block call reaches may allocate, lock or call into the unknown.
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang" AND CMAKE_CXX_COMPILER_VERSION VERSION_GREATER_EQUAL 20)
  target_compile_options(zum_flags INTERFACE -Wfunction-effects)
endif()

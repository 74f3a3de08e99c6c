# Flags of every target. Numbers are part of the product: no contraction into fused
# multiply-adds and no reordering, so that every machine gives the same samples.
add_library(zum_flags INTERFACE)
target_compile_options(zum_flags INTERFACE
  -ffp-contract=off
  -fno-math-errno
  -pthread  # some libraries ask for it; precompiled headers fit where all are alike
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
target_include_directories(zum_flags INTERFACE ${CMAKE_SOURCE_DIR})
if(ZUM_PLAIN_LANES)
  target_compile_definitions(zum_flags INTERFACE ZUM_PLAIN_LANES)
endif()

# The control pass is spread over many small files; seen as one program it costs a quarter less.
# That takes half a minute a link, so the objects carry plain code too, for what is neither shipped
# nor measured.
set(CMAKE_INTERPROCEDURAL_OPTIMIZATION_RELEASE ON)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  set(CMAKE_CXX_COMPILE_OPTIONS_IPO -flto=auto -ffat-lto-objects)
endif()

# What follows in the calling folder is compiled by itself, as fast as the rest: no block passes
# through it.
macro(zum_off_the_block)
  set(CMAKE_INTERPROCEDURAL_OPTIMIZATION_RELEASE OFF)
endmacro()

# What follows in the calling folder is compiled and linked file by file, and fast.
macro(zum_file_by_file)
  zum_off_the_block()
  add_compile_options($<$<CONFIG:Release>:-O1>)
  add_link_options(-fno-lto)
endmacro()

# What is shipped: overwritten stacks and buffers end the program, tables of addresses are read-only
# behind the start. Guards on the stack cost a hundredth of the block call, the rest nothing that could
# be measured. Marks for control flow would be lost: Debian 12's own start files have none.
if(NOT ZUM_SANITIZE)
  add_compile_options($<$<CONFIG:Release>:-fstack-protector-strong>)
  add_compile_options($<$<CONFIG:Release>:-U_FORTIFY_SOURCE> $<$<CONFIG:Release>:-D_FORTIFY_SOURCE=2>)
  add_link_options(-Wl,-z,relro,-z,now,-z,noexecstack)
endif()

if(ZUM_SANITIZE)
  add_compile_options(-fsanitize=${ZUM_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${ZUM_SANITIZE})
endif()

# clang checks at compile time what the real-time sanitizer checks at run time: nothing that the
# block call reaches may allocate, lock or call into the unknown.
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang" AND CMAKE_CXX_COMPILER_VERSION VERSION_GREATER_EQUAL 20)
  target_compile_options(zum_flags INTERFACE -Wfunction-effects)
endif()

# A clean build gains nothing by ccache, every later one does. It asks no preprocessor, and knows
# that precompiled headers change with what they include.
find_program(ZUM_CCACHE ccache)
if(ZUM_CCACHE)
  foreach(language C CXX)
    if(NOT DEFINED CMAKE_${language}_COMPILER_LAUNCHER)
      set(CMAKE_${language}_COMPILER_LAUNCHER
          env CCACHE_DEPEND=1 CCACHE_SLOPPINESS=pch_defines,time_macros ${ZUM_CCACHE})
    endif()
  endforeach()
endif()

# The presets that build everything (`release`, the sanitizers) compile eight sources of a library at
# a time, which saves two thirds of what headers cost (CMAKE_UNITY_BUILD): names in unnamed
# namespaces are unique within a library. `debug` and `lint` take each source alone.

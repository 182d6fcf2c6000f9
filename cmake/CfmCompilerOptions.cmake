# SPDX-License-Identifier: Apache-2.0
# The compiler options that every target of the project is built with, as the
# interface target cfm_options. Generated code is exempt: it does not link to it.
add_library(cfm_options INTERFACE)
target_compile_options(cfm_options INTERFACE
  -Wall -Wextra -Wconversion -Wshadow
  $<$<BOOL:${CFM_WARNINGS_AS_ERRORS}>:-Werror>)

if(CFM_SANITIZE)
  add_compile_options(-fsanitize=${CFM_SANITIZE} -fno-omit-frame-pointer
                      -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${CFM_SANITIZE})
endif()

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_C_COMPILER_LAUNCHER "${CCACHE_PROGRAM}")
  set(CMAKE_CXX_COMPILER_LAUNCHER "${CCACHE_PROGRAM}")
endif()

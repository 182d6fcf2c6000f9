# SPDX-License-Identifier: Apache-2.0
# Fails unless LIBRARY defines dynamic symbols, and all of them are functions named PREFIX... (or
# the version node that they belong to).
execute_process(COMMAND ${NM} -D --defined-only ${LIBRARY}
  OUTPUT_VARIABLE listing COMMAND_ERROR_IS_FATAL ANY)
string(STRIP "${listing}" listing)
string(REPLACE "\n" ";" lines "${listing}")
set(functions 0)
foreach(line IN LISTS lines)
  if(line MATCHES " T ${PREFIX}[a-z_]+(@@[A-Z0-9_]+)?$")
    math(EXPR functions "${functions} + 1")
  elseif(NOT line MATCHES " A [A-Z]+_[0-9]+")
    message(SEND_ERROR "unexpected symbol: ${line}")
  endif()
endforeach()
message(STATUS "${functions} functions named ${PREFIX}...")
if(functions EQUAL 0)
  message(SEND_ERROR "no functions named ${PREFIX}...")
endif()

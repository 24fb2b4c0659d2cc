# Shared by the command-line scripts: run a command and check its exit code
# (its output and error text are left in LAST_OUT and LAST_ERR), compare two
# files byte for byte, compare two strings. Starts WORK afresh.
file(REMOVE_RECURSE "${WORK}")
file(MAKE_DIRECTORY "${WORK}")

function(expect_run code)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT rc EQUAL code)
    message(FATAL_ERROR "expected exit ${code}, got ${rc}: ${ARGN}\n${out}\n${err}")
  endif()
  set(LAST_OUT "${out}" PARENT_SCOPE)
  set(LAST_ERR "${err}" PARENT_SCOPE)
endfunction()

function(expect_same a b)
  file(READ "${a}" ca HEX)
  file(READ "${b}" cb HEX)
  if(NOT ca STREQUAL cb)
    message(FATAL_ERROR "${a} and ${b} differ")
  endif()
endfunction()

function(expect_equal actual expected)
  if(NOT "${actual}" STREQUAL "${expected}")
    message(FATAL_ERROR "expected:\n${expected}\ngot:\n${actual}")
  endif()
endfunction()

# syxtool highlight end to end against the references in tests/data/highlight.
# Run with -DSYXTOOL=... -DDATA=... -DWORK=...; add -DREGENERATE=ON to write
# the references anew from the current program (then read the diff).
include("${CMAKE_CURRENT_LIST_DIR}/expect.cmake")
set(DIR "${DATA}/highlight")

# Runs syxtool highlight ARGS into WORK/OUTPUT and compares it byte for byte
# with the reference of that name.
function(expect_output output)
  execute_process(COMMAND "${SYXTOOL}" highlight ${ARGN}
                  RESULT_VARIABLE rc OUTPUT_FILE "${WORK}/${output}" ERROR_VARIABLE err)
  if(NOT rc EQUAL 0)
    message(FATAL_ERROR "highlight ${ARGN} failed with ${rc}: ${err}")
  endif()
  if(REGENERATE)
    configure_file("${WORK}/${output}" "${DIR}/${output}" COPYONLY)
    return()
  endif()
  execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files "${WORK}/${output}" "${DIR}/${output}"
                  RESULT_VARIABLE differ)
  if(differ)
    file(READ "${WORK}/${output}" got)
    message(FATAL_ERROR "${output} differs from the reference; got:\n${got}")
  endif()
endfunction()

# The definition's own sample as a page, the default format.
expect_output(sample.html "${DIR}/preview.syx")
expect_output(sample.html "${DIR}/preview.syx" --format html)
# A text file in the system code page, and the same text in UTF-16 with a
# byte order mark, for a terminal.
expect_output(text.ansi "${DIR}/preview.syx" "${DIR}/text-cp1252.txt" --format ansi)
expect_output(text.ansi --format=ansi "${DIR}/preview.syx" "${DIR}/text-utf16.txt")

# Files that cannot be read: 1, with the name in the message.
expect_run(1 "${SYXTOOL}" highlight "${WORK}/missing.syx")
string(FIND "${LAST_ERR}" "missing.syx" at)
if(at EQUAL -1)
  message(FATAL_ERROR "unclear error: ${LAST_ERR}")
endif()
expect_run(1 "${SYXTOOL}" highlight "${DIR}/preview.syx" "${WORK}/missing.txt")
# Bad arguments: 2.
expect_run(2 "${SYXTOOL}" highlight)
expect_run(2 "${SYXTOOL}" highlight "${DIR}/preview.syx" --format)
expect_run(2 "${SYXTOOL}" highlight "${DIR}/preview.syx" --format rtf)
expect_run(2 "${SYXTOOL}" highlight "${DIR}/preview.syx" --colour)
expect_run(2 "${SYXTOOL}" highlight "${DIR}/preview.syx" a.txt b.txt)

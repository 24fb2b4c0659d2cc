# End-to-end checks of syxtool: run with -DSYXTOOL=... -DDATA=... -DWORK=...
include("${CMAKE_CURRENT_LIST_DIR}/expect.cmake")

# Open then Save of the reference document gives the reference text, and a
# second pass gives the same bytes.
expect_run(0 "${SYXTOOL}" normalize "${DATA}/document/roundtrip_input.syx" "${WORK}/once.syx")
expect_same("${WORK}/once.syx" "${DATA}/document/roundtrip_saved.syx")
expect_run(0 "${SYXTOOL}" normalize "${WORK}/once.syx" "${WORK}/twice.syx")
expect_same("${WORK}/once.syx" "${WORK}/twice.syx")

# A file without banner lines receives the six default author lines.
file(WRITE "${WORK}/bare.syx" "[Keywords]\nx\n")
expect_run(0 "${SYXTOOL}" normalize "${WORK}/bare.syx" "${WORK}/bare-out.syx")
file(READ "${WORK}/bare-out.syx" bare)
string(FIND "${bare}" "{ <b>Recommended colors:</b>" at)
if(at EQUAL -1)
  message(FATAL_ERROR "default author lines missing:\n${bare}")
endif()

expect_run(0 "${SYXTOOL}" dump "${DATA}/document/roundtrip_input.syx")
foreach(piece "\"encoding\": \"ansi\"" "\"name\": \"obj.\"" "{\"name\": \"Run\", \"kind\": 4, \"text\": \"Run()\"}")
  string(FIND "${LAST_OUT}" "${piece}" at)
  if(at EQUAL -1)
    message(FATAL_ERROR "dump lacks ${piece}:\n${LAST_OUT}")
  endif()
endforeach()

# Errors: missing file 1, bad arguments 2, help 0.
expect_run(1 "${SYXTOOL}" dump "${WORK}/missing.syx")
string(FIND "${LAST_ERR}" "Cannot open file" at)
if(at EQUAL -1)
  message(FATAL_ERROR "unclear error: ${LAST_ERR}")
endif()
expect_run(1 "${SYXTOOL}" normalize "${DATA}/document/roundtrip_input.syx" "${WORK}/no/dir/x.syx")
expect_run(2 "${SYXTOOL}")
expect_run(2 "${SYXTOOL}" dump)
expect_run(2 "${SYXTOOL}" frobnicate x)
expect_run(0 "${SYXTOOL}" --help)

# A device that takes no bytes: the failure is reported, not hidden. Windows
# has no such device (Wine shows the Linux one as a file it may not open).
if(EXISTS /dev/full AND NOT TARGET_WINDOWS)
  expect_run(1 "${SYXTOOL}" normalize "${DATA}/document/roundtrip_input.syx" /dev/full)
  string(FIND "${LAST_ERR}" "Cannot write file \"/dev/full\". No space left on device" at)
  if(at EQUAL -1)
    message(FATAL_ERROR "unclear error for /dev/full: ${LAST_ERR}")
  endif()
endif()

# Windows does not replace a read-only file: the save says so and the file
# keeps its bytes.
if(TARGET_WINDOWS)
  file(WRITE "${WORK}/readonly.syx" "old")
  file(CHMOD "${WORK}/readonly.syx" PERMISSIONS OWNER_READ GROUP_READ WORLD_READ)
  expect_run(1 "${SYXTOOL}" normalize "${DATA}/document/roundtrip_input.syx" "${WORK}/readonly.syx")
  string(FIND "${LAST_ERR}" "Permission denied" at)
  file(READ "${WORK}/readonly.syx" kept)
  if(at EQUAL -1 OR NOT kept STREQUAL "old")
    message(FATAL_ERROR "read-only file: '${LAST_ERR}', now '${kept}'")
  endif()
endif()

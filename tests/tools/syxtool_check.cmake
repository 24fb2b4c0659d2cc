# syxtool check and diff end to end: run with -DSYXTOOL=... -DWORK=...
include("${CMAKE_CURRENT_LIST_DIR}/expect.cmake")

# A clean file: nothing to say, exit 0.
file(WRITE "${WORK}/clean.syx" "[Options]\r\n  CaseSensitive = \"Yes\"\r\n[End]\r\n")
expect_run(0 "${SYXTOOL}" check "${WORK}/clean.syx")
expect_equal("${LAST_OUT}" "")

# Findings in the compilers' format, in line order, exit 1.
file(WRITE "${WORK}/bad.syx"
  "[Options]\n  CaseSensitve = Yes\n  HighlightUrl = true\n[End]\n[Keywords]\nif\nthen\nif\n[End]\n")
expect_run(1 "${SYXTOOL}" check "${WORK}/bad.syx" "${WORK}/clean.syx")
expect_equal("${LAST_OUT}"
"${WORK}/bad.syx:2: error: unknown option \"CaseSensitve\" (did you mean \"CaseSensitive\"?); a save drops this line [dropped-line]
${WORK}/bad.syx:3:18: warning: HighlightUrl = \"true\" is read as not set; only \"Yes\" (or \"y\") sets it [ignored-value]
${WORK}/bad.syx:8: warning: keyword \"if\" is already in this group (line 6) [duplicate-keyword]
")

# A check turned off, and JSON for tools.
expect_run(1 "${SYXTOOL}" check --disable dropped-line --disable duplicate-keyword
           --format json "${WORK}/bad.syx")
string(JSON count LENGTH "${LAST_OUT}")
expect_equal("${count}" "1")
string(JSON check GET "${LAST_OUT}" 0 check)
string(JSON line GET "${LAST_OUT}" 0 line)
string(JSON column GET "${LAST_OUT}" 0 column)
string(JSON severity GET "${LAST_OUT}" 0 severity)
expect_equal("${check}:${line}:${column}:${severity}" "ignored-value:3:18:warning")
expect_run(0 "${SYXTOOL}" check --format json "${WORK}/clean.syx")
expect_equal("${LAST_OUT}" "[]\n")

# Bad arguments and unreadable files: exit 2, nothing on standard output.
expect_run(2 "${SYXTOOL}" check)
expect_run(2 "${SYXTOOL}" check --disable no-such-check "${WORK}/bad.syx")
expect_run(2 "${SYXTOOL}" check --format xml "${WORK}/bad.syx")
expect_run(2 "${SYXTOOL}" check "${WORK}/bad.syx" "${WORK}/missing.syx")
expect_equal("${LAST_OUT}" "")
string(FIND "${LAST_ERR}" "missing.syx" at)
if(at EQUAL -1)
  message(FATAL_ERROR "the error does not name the file: ${LAST_ERR}")
endif()

# diff: the same file is no difference; a change is shown by section.
expect_run(0 "${SYXTOOL}" diff "${WORK}/bad.syx" "${WORK}/bad.syx")
file(WRITE "${WORK}/changed.syx"
  "[Options]\n  CaseSensitive = Yes\n[End]\n[Keywords]\nif\nelse\n[End]\n")
expect_run(1 "${SYXTOOL}" diff "${WORK}/bad.syx" "${WORK}/changed.syx")
expect_equal("${LAST_OUT}"
"[Options]
  + CaseSensitive = \"Yes\"
[Keywords]
  - \"then\" in group \"Keywords 1\"
  - \"if\" in group \"Keywords 1\"
  + \"else\" in group \"Keywords 1\"
")
expect_run(2 "${SYXTOOL}" diff "${WORK}/bad.syx")
expect_run(2 "${SYXTOOL}" diff "${WORK}/bad.syx" "${WORK}/missing.syx")


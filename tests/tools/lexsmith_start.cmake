# Starts the editor on an example without a screen and checks that it wrote
# the picture of its main window: run with -DLEXSMITH=... -DEXAMPLES=... -DWORK=...
file(REMOVE_RECURSE "${WORK}")
file(MAKE_DIRECTORY "${WORK}")
set(ENV{QT_QPA_PLATFORM} offscreen)
set(ENV{LEXSMITH_APPDATA} "${EXAMPLES}/appdata")
set(ENV{LEXSMITH_SCREENSHOT} "${WORK}/window.png")
execute_process(COMMAND "${LEXSMITH}" "${EXAMPLES}/lua.syx" "${WORK}/no-such-file.syx"
                RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err TIMEOUT 60)
if(NOT rc EQUAL 0)
  message(FATAL_ERROR "lexsmith exited with ${rc}\n${out}\n${err}")
endif()
if(NOT EXISTS "${WORK}/window.png")
  message(FATAL_ERROR "no picture of the main window was written\n${out}\n${err}")
endif()
file(READ "${WORK}/window.png" head LIMIT 8 HEX)
if(NOT head STREQUAL "89504e470d0a1a0a")
  message(FATAL_ERROR "window.png is no PNG file")
endif()

# A copy of the program far from the source tree finds everything it needs
# inside itself.
file(MAKE_DIRECTORY "${WORK}/elsewhere")
file(COPY "${LEXSMITH}" DESTINATION "${WORK}/elsewhere")
get_filename_component(exe "${LEXSMITH}" NAME)
set(ENV{LEXSMITH_SCREENSHOT} "${WORK}/elsewhere/window.png")
execute_process(COMMAND "${WORK}/elsewhere/${exe}" "${EXAMPLES}/lua.syx"
                WORKING_DIRECTORY "${WORK}/elsewhere"
                RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err TIMEOUT 60)
if(NOT rc EQUAL 0 OR NOT EXISTS "${WORK}/elsewhere/window.png")
  message(FATAL_ERROR "the copied program did not start (${rc})\n${out}\n${err}")
endif()

# A fatal start-up error without a screen is printed, and the program ends
# with a failure instead of waiting in a message box.
set(ENV{LEXSMITH_RESOURCES} "${WORK}/no-such-folder")
execute_process(COMMAND "${LEXSMITH}" RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err
                TIMEOUT 20)
if(rc EQUAL 0 OR NOT err MATCHES "form data of the option trees cannot be read")
  message(FATAL_ERROR "expected a printed start-up error and a failure, got ${rc}\n${out}\n${err}")
endif()
unset(ENV{LEXSMITH_RESOURCES})

# Included by the scripts that run a cross-built tarvix-cli (CLI, through
# EMULATOR) beside the native one (NATIVE_CLI): checks that the native
# tools are built, and makes the demo dump in WORK.
foreach(tool NATIVE_CLI NATIVE_MAKE_DEMO)
    if(NOT EXISTS "${${tool}}")
        message(FATAL_ERROR "${${tool}} is missing: build the native tarvix-cli and tarvix-make-demo first")
    endif()
endforeach()
file(MAKE_DIRECTORY "${WORK}")
set(demo "${WORK}/demo.syx")
execute_process(COMMAND "${NATIVE_MAKE_DEMO}" "${demo}" RESULT_VARIABLE made)
if(NOT made EQUAL 0)
    message(FATAL_ERROR "tarvix-make-demo failed: ${made}")
endif()

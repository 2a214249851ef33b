# cmake -P script: runs document commands of a cross-built tarvix-cli (through
# EMULATOR) and of the native one on the demo dump, and fails unless both
# print the same bytes and exit the same way.
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

# The emulated program gets the dump by a name relative to the folder both
# run in, which means the same file on both sides.
set(runs "memory demo.syx" "parts demo.syx" "songs demo.syx" "list demo.syx 0 1"
         "steps demo.syx 0" "list demo.syx 7 9")
foreach(run IN LISTS runs)
    separate_arguments(words UNIX_COMMAND "${run}")
    execute_process(COMMAND "${NATIVE_CLI}" ${words} WORKING_DIRECTORY "${WORK}"
        OUTPUT_VARIABLE native_out ERROR_VARIABLE native_err RESULT_VARIABLE native_code)
    execute_process(COMMAND "${EMULATOR}" "${CLI}" ${words} WORKING_DIRECTORY "${WORK}"
        OUTPUT_VARIABLE cross_out ERROR_VARIABLE cross_err RESULT_VARIABLE cross_code)
    string(LENGTH "${native_out}" native_length)
    if(NOT native_out STREQUAL cross_out OR NOT native_err STREQUAL cross_err
            OR NOT native_code STREQUAL cross_code)
        file(WRITE "${WORK}/native.txt" "${native_out}${native_err}")
        file(WRITE "${WORK}/cross.txt" "${cross_out}${cross_err}")
        message(FATAL_ERROR "tarvix-cli ${run}: the builds differ (exit ${native_code} and "
                            "${cross_code}); see ${WORK}/native.txt and cross.txt")
    endif()
    message(STATUS "tarvix-cli ${run}: same ${native_length} bytes, exit ${native_code}")
endforeach()

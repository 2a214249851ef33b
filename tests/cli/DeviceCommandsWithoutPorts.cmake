# cmake -P script: the device commands of a cross-built tarvix-cli (through
# EMULATOR) where the MIDI service lists no port, as wine's does here. ports
# says why; a send or a receive to a missing port fails with the native
# build's message, after the reason; device says it is not available.
include(${CMAKE_CURRENT_LIST_DIR}/CrossCli.cmake)

# Runs one side; <side>_code, _out and _err. Lines that the Linux sound
# library under wine prints when it finds no sound card are wine's, not the
# program's, and are left out.
function(run side)
    if(side STREQUAL "native")
        set(command "${NATIVE_CLI}" ${ARGN})
    else()
        set(command "${EMULATOR}" "${CLI}" ${ARGN})
    endif()
    execute_process(COMMAND ${command} WORKING_DIRECTORY "${WORK}"
        RESULT_VARIABLE code OUTPUT_VARIABLE out ERROR_VARIABLE err)
    string(REGEX REPLACE "ALSA lib [^\n]*\n" "" err "${err}")
    set(${side}_code "${code}" PARENT_SCOPE)
    set(${side}_out "${out}" PARENT_SCOPE)
    set(${side}_err "${err}" PARENT_SCOPE)
endfunction()

run(cross ports)
set(reason "WinMM: The system lists no MIDI ports")
string(FIND "${cross_err}" "${reason}" at)
if(NOT cross_code EQUAL 0 OR NOT cross_out STREQUAL "" OR NOT at EQUAL 0)
    message(FATAL_ERROR "ports: exit ${cross_code}, stdout '${cross_out}', stderr '${cross_err}': "
                        "expected no port (wine offers none here) and the reason")
endif()
message(STATUS "tarvix-cli ports: ${cross_err}")

# The program's own message is the first line on both; the Windows one
# then gives WinMM's reason.
set(port "WinMM: Not Here")
file(REMOVE "${WORK}/got.syx")
foreach(transfer "send;demo.syx" "receive;-o;got.syx")
    foreach(side native cross)
        run(${side} ${transfer} --port "${port}")
        string(REGEX MATCH "^[^\n]*" ${side}_first "${${side}_err}")
    endforeach()
    string(FIND "${cross_err}" "\n${reason}" at)
    if(NOT cross_code EQUAL 1 OR NOT native_code EQUAL 1 OR NOT cross_first STREQUAL native_first
       OR at LESS 1)
        message(FATAL_ERROR "${transfer}: exit ${cross_code} and '${cross_err}' under wine, "
                            "exit ${native_code} and '${native_err}' natively")
    endif()
    message(STATUS "tarvix-cli ${transfer}: ${cross_first}")
endforeach()
if(EXISTS "${WORK}/got.syx")
    message(FATAL_ERROR "receive from a missing port wrote got.syx")
endif()

# A file that cannot be written is refused before the port is opened.
run(cross receive --port "${port}" -o no-such-folder/got.syx)
string(FIND "${cross_err}" "Can't write file \"no-such-folder/got.syx\": " at)
string(FIND "${cross_err}" "WinMM" port_at)
if(NOT cross_code EQUAL 1 OR NOT at EQUAL 0 OR NOT port_at EQUAL -1)
    message(FATAL_ERROR "receive into a missing folder: exit ${cross_code}, '${cross_err}'")
endif()

run(cross device --name somewhere)
string(FIND "${cross_err}" "tarvix-cli device: not available on Windows: " at)
if(NOT cross_code EQUAL 1 OR NOT at EQUAL 0)
    message(FATAL_ERROR "device: exit ${cross_code}, '${cross_err}'")
endif()
message(STATUS "${cross_err}")

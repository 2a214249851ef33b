# cmake -P script: runs document commands of a cross-built tarvix-cli (through
# EMULATOR) and of the native one on the demo dump, and fails unless both
# print the same bytes and exit the same way, for file names outside ASCII
# too, and write the same file.
include(${CMAKE_CURRENT_LIST_DIR}/CrossCli.cmake)
# A file name with a space and letters outside ASCII, which the Windows
# program must get from its command line and open as it is.
set(unicode "Démo Ünïcode.syx")
file(COPY_FILE "${demo}" "${WORK}/${unicode}")

# The emulated program gets the dump by a name relative to the folder both
# run in, which means the same file on both sides.
set(runs "memory demo.syx" "parts demo.syx" "songs demo.syx" "list demo.syx 0 1"
         "steps demo.syx 0" "list demo.syx 7 9" "parts \"${unicode}\"")
# The outputs go to files and are compared as bytes: execute_process would
# turn CR LF into LF in a variable and hide the very difference that
# matters here.
set(index 0)
foreach(run IN LISTS runs)
    math(EXPR index "${index} + 1")
    separate_arguments(words UNIX_COMMAND "${run}")
    foreach(side native cross)
        if(side STREQUAL "native")
            set(command "${NATIVE_CLI}" ${words})
        else()
            set(command "${EMULATOR}" "${CLI}" ${words})
        endif()
        execute_process(COMMAND ${command} WORKING_DIRECTORY "${WORK}"
            OUTPUT_FILE "${WORK}/${index}.${side}.out" ERROR_FILE "${WORK}/${index}.${side}.err"
            RESULT_VARIABLE ${side}_code)
    endforeach()
    foreach(stream out err)
        execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files
            "${WORK}/${index}.native.${stream}" "${WORK}/${index}.cross.${stream}"
            RESULT_VARIABLE differ)
        if(NOT differ EQUAL 0)
            message(FATAL_ERROR "tarvix-cli ${run}: the builds' std${stream} differ; see "
                                "${WORK}/${index}.native.${stream} and ${index}.cross.${stream}")
        endif()
    endforeach()
    if(NOT native_code STREQUAL cross_code)
        message(FATAL_ERROR "tarvix-cli ${run}: exit ${native_code} natively, ${cross_code} cross-built")
    endif()
    file(SIZE "${WORK}/${index}.native.out" size)
    message(STATUS "tarvix-cli ${run}: same ${size} bytes, exit ${native_code}")
endforeach()

# The same name written: the Windows program must create the file under
# exactly that name, with what the native program writes.
set(written "Nëu Dätei.syx")
file(REMOVE "${WORK}/${written}" "${WORK}/new.native.syx")
execute_process(COMMAND "${NATIVE_CLI}" new -o new.native.syx WORKING_DIRECTORY "${WORK}")
execute_process(COMMAND "${EMULATOR}" "${CLI}" new -o "${written}" WORKING_DIRECTORY "${WORK}"
    RESULT_VARIABLE code ERROR_VARIABLE err)
if(NOT code EQUAL 0 OR NOT EXISTS "${WORK}/${written}")
    message(FATAL_ERROR "tarvix-cli new -o \"${written}\": exit ${code}, no such file; ${err}")
endif()
execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files "${WORK}/new.native.syx" "${WORK}/${written}"
    RESULT_VARIABLE differ)
if(NOT differ EQUAL 0)
    message(FATAL_ERROR "tarvix-cli new -o \"${written}\" wrote other bytes than the native build")
endif()
message(STATUS "tarvix-cli new -o \"${written}\": the file has that name and the native bytes")

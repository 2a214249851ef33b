# Runs PROGRAM --version and fails unless it exits 0, prints exactly
# "NAME VERSION" and a line end on stdout, and nothing on stderr.
# Usage: cmake -DPROGRAM=... -DNAME=... -DVERSION=... [-DEMULATOR=...] -P CheckVersion.cmake
# EMULATOR runs a cross-built PROGRAM (wine for the Windows build).
execute_process(COMMAND ${EMULATOR} "${PROGRAM}" --version
    RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err TIMEOUT 60)
set(expected "${NAME} ${VERSION}\n")
if(NOT status STREQUAL "0")
    message(FATAL_ERROR "${PROGRAM} --version exited with '${status}'; stderr: ${err}")
endif()
if(NOT out STREQUAL expected)
    message(FATAL_ERROR "${PROGRAM} --version printed '${out}', expected '${expected}'")
endif()
if(NOT err STREQUAL "")
    message(FATAL_ERROR "${PROGRAM} --version wrote to stderr: ${err}")
endif()

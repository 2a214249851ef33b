# Cross-build for 64-bit Windows with Debian's MinGW-w64 (the posix thread
# model, so std::thread and std::mutex work). Programs are linked statically
# so that they run under wine, or on a bare Windows, without MinGW's DLLs.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(TARVIX_MINGW_PREFIX x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${TARVIX_MINGW_PREFIX}-gcc-posix)
set(CMAKE_CXX_COMPILER ${TARVIX_MINGW_PREFIX}-g++-posix)
set(CMAKE_RC_COMPILER ${TARVIX_MINGW_PREFIX}-windres)

set(CMAKE_FIND_ROOT_PATH /usr/${TARVIX_MINGW_PREFIX})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# pkg-config looks only at the cross-compiled packages, never the host's
# (the host's ALSA and JACK are no use to a Windows program).
set(ENV{PKG_CONFIG_LIBDIR} /usr/${TARVIX_MINGW_PREFIX}/lib/pkgconfig)
set(ENV{PKG_CONFIG_PATH} "")

set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
# MinGW's own C99 printf family, so that %zu and %lld mean what they mean
# elsewhere. GCC's format check would judge the formats by the older
# Microsoft printf instead; the native build checks them.
set(CMAKE_CXX_FLAGS_INIT "-D__USE_MINGW_ANSI_STDIO=1 -Wno-format")
set(CMAKE_C_FLAGS_INIT "-D__USE_MINGW_ANSI_STDIO=1")

# The built programs run here through wine: CTest, and GoogleTest's test
# discovery, call them through this wrapper.
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/wine-run.sh)

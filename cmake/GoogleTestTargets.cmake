# GTest::gtest, GTest::gtest_main and GTest::gmock for the test programs.
# A native build uses the installed GoogleTest. A cross-build cannot link the
# host's libraries, so it compiles Debian's GoogleTest sources (package
# googletest, /usr/src/googletest) with the cross compiler instead.
if(NOT CMAKE_CROSSCOMPILING)
    find_package(GTest REQUIRED)
    return()
endif()

set(TARVIX_GOOGLETEST_SOURCE /usr/src/googletest CACHE PATH "GoogleTest sources for cross-builds")
if(NOT EXISTS ${TARVIX_GOOGLETEST_SOURCE}/CMakeLists.txt)
    message(FATAL_ERROR "GoogleTest sources not found in ${TARVIX_GOOGLETEST_SOURCE}; install Debian's googletest package")
endif()
set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
set(BUILD_GMOCK ON CACHE BOOL "" FORCE)
add_subdirectory(${TARVIX_GOOGLETEST_SOURCE} ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
foreach(library gtest gtest_main gmock gmock_main)
    if(NOT TARGET GTest::${library})
        add_library(GTest::${library} ALIAS ${library})
    endif()
endforeach()

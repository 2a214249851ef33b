# The Debian package of the install tree (scripts/package.sh runs cpack).
# Its dependencies are what dpkg-shlibdeps finds the programs linked
# against, plus the Qt plugins the editor loads at run time, which no linker
# records.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tarvix)
set(CPACK_PACKAGE_VENDOR Quillon)
set(CPACK_PACKAGE_CONTACT "Quillon <tarvix@quillon.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "editor and librarian for the Alesis MMT-8 sequencer")
set(CPACK_PACKAGE_DESCRIPTION
    "Tarvix receives the whole memory of an Alesis MMT-8 hardware MIDI sequencer
as one SysEx dump, shows and edits its 100 parts and 100 songs, imports and
exports Standard MIDI Files, lists tracks as text, saves .syx files and sends
the memory back. tarvix-cli does the same from a shell, for scripts and batch
conversion.")
set(CPACK_PACKAGE_HOMEPAGE_URL ${PROJECT_HOMEPAGE_URL})
set(CPACK_STRIP_FILES ON)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
if(TARVIX_BUILD_GUI)
    # The window's SVG icons are drawn by Qt's SVG image and icon plugins.
    set(CPACK_DEBIAN_PACKAGE_DEPENDS "libqt6svg6")
endif()

# Installing and packaging need only what is installed, which package.sh
# builds; not every test and benchmark first.
set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY ON)

include(CPack)

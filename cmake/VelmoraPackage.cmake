# The Debian package: cpack -G DEB in the build folder.

install(FILES ${PROJECT_SOURCE_DIR}/README.md ${PROJECT_SOURCE_DIR}/CHANGELOG.md
              ${PROJECT_SOURCE_DIR}/LICENSE
        DESTINATION ${CMAKE_INSTALL_DOCDIR})

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME velmora)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "workbench for audio plug-ins written in C++")
set(CPACK_PACKAGE_CONTACT "The Velmora developers <maintainers@velmora.example>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Plug-ins are compiled on the user's machine. PortAudio is opened by its name while the program runs, which the
# search for linked libraries does not see.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "g++ | clang, libportaudio2")
include(CPack)

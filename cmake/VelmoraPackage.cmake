# The Debian package: cpack in the build folder.

set(documents ${CMAKE_INSTALL_DATADIR}/doc/velmora)
install(FILES ${PROJECT_SOURCE_DIR}/README.md ${PROJECT_SOURCE_DIR}/CHANGELOG.md DESTINATION ${documents})
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${documents} RENAME copyright)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs DESTINATION ${documents})

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME velmora)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "workbench for audio plug-ins written in C++")
set(CPACK_PACKAGE_DESCRIPTION
"An audio processing lab for people who write their own effects and synthesizers
in C++: it compiles a plug-in class written by hand, loads it safely, plays
recordings, the sound card's input and a test oscillator through it, and
measures what it does. Controls are laid on a panel; the code that declares
them is written into the class.")
set(CPACK_PACKAGE_CONTACT "The Velmora developers <maintainers@velmora.example>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
# Finds the libraries that are linked, Qt's among them.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Plug-ins are compiled on the user's machine. PortAudio is opened by its name while the program runs, which the
# search for linked libraries does not see.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "g++ | clang, libportaudio2")
if(VELMORA_WIDGETS)
  # Qt opens its way to Wayland by itself.
  set(CPACK_DEBIAN_PACKAGE_RECOMMENDS qt6-wayland)
  set(CPACK_DEBIAN_PACKAGE_SUGGESTS codeblocks)
endif()
include(CPack)

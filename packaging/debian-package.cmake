# What a Linux installation holds, and the Debian package made of it: cpack -G DEB --config build/CPackConfig.cmake
# The programs find help, texts and each other in their own folder; commands are links into it.
include(GNUInstallDirs)
set(KESTROVA_MAINTAINER "The Kestrova developers <kestrova@example.org>" CACHE STRING "Who answers for the package")
set(PROGRAM_FOLDER lib/kestrova)
install(TARGETS ${PROGRAMS} RUNTIME DESTINATION ${PROGRAM_FOLDER})
set(COMMANDS ${PROGRAMS})
list(REMOVE_ITEM COMMANDS KVTour) # opened from the help menu
install(DIRECTORY ${PROJECT_SOURCE_DIR}/src/resources/Messages DESTINATION ${PROGRAM_FOLDER})

# Debian wants texts compressed so that the same text always gives the same file.
set(STAGE ${PROJECT_BINARY_DIR}/package-files)
file(MAKE_DIRECTORY ${STAGE})
function(install_compressed FILE NAME DESTINATION)
  set(OUTPUT ${STAGE}/${NAME}.gz)
  add_custom_command(OUTPUT ${OUTPUT} COMMAND gzip -9nc ${FILE} > ${OUTPUT} DEPENDS ${FILE} VERBATIM)
  set_property(GLOBAL APPEND PROPERTY COMPRESSED_FILES ${OUTPUT})
  install(FILES ${OUTPUT} DESTINATION ${DESTINATION})
endfunction()

set(VERSION ${PROJECT_VERSION})
foreach(COMMAND ${COMMANDS})
  file(CREATE_LINK ../${PROGRAM_FOLDER}/${COMMAND} ${STAGE}/${COMMAND} SYMBOLIC)
  install(FILES ${STAGE}/${COMMAND} DESTINATION ${CMAKE_INSTALL_BINDIR})
  if("${COMMAND}" STREQUAL kestrova-cli) # it knows its commands itself
    add_custom_command(OUTPUT ${STAGE}/${COMMAND}.1 COMMAND ${COMMAND} manual > ${STAGE}/${COMMAND}.1
                       DEPENDS ${COMMAND} VERBATIM)
  else()
    configure_file(${PROJECT_SOURCE_DIR}/packaging/man/${COMMAND}.1.in ${STAGE}/${COMMAND}.1 @ONLY)
  endif()
  install_compressed(${STAGE}/${COMMAND}.1 ${COMMAND}.1 ${CMAKE_INSTALL_MANDIR}/man1)
endforeach()

# What bash completes, and what "systemctl --user enable kestrova-watch" starts.
set(COMPLETION ${STAGE}/completion)
add_custom_command(OUTPUT ${COMPLETION} COMMAND kestrova-cli completion > ${COMPLETION} DEPENDS kestrova-cli VERBATIM)
set_property(GLOBAL APPEND PROPERTY COMPRESSED_FILES ${COMPLETION})
install(FILES ${COMPLETION} DESTINATION share/bash-completion/completions RENAME kestrova-cli)
set(WATCH_PROGRAM /usr/bin/kestrova-cli)
set(WATCH_ENVIRONMENT "")
configure_file(${PROJECT_SOURCE_DIR}/src/platform/posix/kestrova-watch.service.in ${STAGE}/kestrova-watch.service @ONLY)
install(FILES ${STAGE}/kestrova-watch.service DESTINATION lib/systemd/user)

set(DOCUMENTS share/doc/kestrova)
configure_file(${PROJECT_SOURCE_DIR}/packaging/debian/changelog.in ${STAGE}/changelog.Debian @ONLY)
install_compressed(${STAGE}/changelog.Debian changelog.Debian ${DOCUMENTS})
install_compressed(${PROJECT_SOURCE_DIR}/CHANGELOG.md changelog ${DOCUMENTS})
file(READ ${PROJECT_SOURCE_DIR}/LICENSE LICENCE)
string(REGEX REPLACE "^MIT License\n+Copyright[^\n]*\n+" "" LICENCE "${LICENCE}")
string(STRIP "${LICENCE}" LICENCE)
string(REPLACE "\n\n" "\n.\n" LICENCE "${LICENCE}")
string(REPLACE "\n" "\n " LICENCE "${LICENCE}")
configure_file(${PROJECT_SOURCE_DIR}/packaging/debian/copyright.in ${STAGE}/copyright @ONLY)
install(FILES ${STAGE}/copyright DESTINATION ${DOCUMENTS})

if(TARGET kestrova)
  install(FILES ${PROJECT_BINARY_DIR}/bin/Kestrova.hlp DESTINATION ${PROGRAM_FOLDER})
  install(FILES ${PROJECT_SOURCE_DIR}/packaging/kestrova.desktop DESTINATION share/applications)
  install(FILES ${PROJECT_SOURCE_DIR}/src/resources/images/Kestrova.svg
          DESTINATION share/icons/hicolor/scalable/apps RENAME kestrova.svg)
endif()
get_property(FILES GLOBAL PROPERTY COMPRESSED_FILES)
add_custom_target(package-files ALL DEPENDS ${FILES})

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME kestrova)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "desktop web-site availability monitor")
set(CPACK_PACKAGE_DESCRIPTION "Kestrova requests every web site of a list, by hand or on a schedule,
shows each one as up, warning or down, keeps a log, and sends a mail when
a site has failed twice in a row: once for each outage.
.
The package holds the monitor with its window and tray icon, a viewer for its
logs, and kestrova-cli, which does the same in a terminal.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
# What is stripped from the programs goes into a package of its own, kestrova-dbgsym.
set(CPACK_DEBIAN_DEBUGINFO_PACKAGE ON)
set(CPACK_PROJECT_CONFIG_FILE ${PROJECT_SOURCE_DIR}/packaging/package-config.cmake)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION net)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER ${KESTROVA_MAINTAINER})
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS xdg-utils) # opens pages and logs with the desktop's own programs
include(CPack)

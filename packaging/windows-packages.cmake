# What an installation on Windows holds, and the packages made of it: an archive to unpack anywhere (cpack -G ZIP)
# and an installer (cpack -G NSIS). The programs find help, texts and each other in their own folder.
install(TARGETS ${PROGRAMS} RUNTIME DESTINATION .)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/src/resources/Messages DESTINATION .)
if(TARGET kestrova)
  install(FILES ${PROJECT_BINARY_DIR}/bin/Kestrova.hlp DESTINATION .)
endif()

# Texts as the system's own editor has shown them in all its versions.
set(STAGE ${PROJECT_BINARY_DIR}/package-files)
configure_file(windows/README.txt.in ${STAGE}/README.txt @ONLY NEWLINE_STYLE WIN32)
configure_file(${PROJECT_SOURCE_DIR}/LICENSE ${STAGE}/LICENSE.txt @ONLY NEWLINE_STYLE WIN32)
configure_file(${PROJECT_SOURCE_DIR}/CHANGELOG.md ${STAGE}/CHANGELOG.txt @ONLY NEWLINE_STYLE WIN32)
install(FILES ${STAGE}/README.txt ${STAGE}/LICENSE.txt ${STAGE}/CHANGELOG.txt DESTINATION .)

set(CPACK_GENERATOR ZIP NSIS)
set(CPACK_PACKAGE_NAME Kestrova)
set(CPACK_PACKAGE_VENDOR Tamsel)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_RESOURCE_FILE_LICENSE ${STAGE}/LICENSE.txt)
set(CPACK_STRIP_FILES ON)
# installer.nsi.in stands in for the template that CPack brings.
configure_file(windows/installer.nsi.in ${STAGE}/templates/NSIS.template.in COPYONLY)
set(CPACK_MODULE_PATH ${STAGE}/templates)
set(CPACK_NSIS_MUI_ICON ${PROJECT_SOURCE_DIR}/packaging/windows/kestrova.ico)
set(CPACK_PROJECT_CONFIG_FILE ${PROJECT_SOURCE_DIR}/packaging/package-config.cmake)
list(TRANSFORM PROGRAMS REPLACE "(.+)" "${PROJECT_BINARY_DIR}/bin/\\1.exe" OUTPUT_VARIABLE CPACK_KESTROVA_PROGRAMS)
include(CPack)

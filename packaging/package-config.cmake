# Read by cpack before each package. In packages every time is that of the commit, so that the same sources always
# give the same packages; SOURCE_DATE_EPOCH from outside goes before.
if(NOT DEFINED ENV{SOURCE_DATE_EPOCH})
  execute_process(COMMAND git log -1 --format=%ct WORKING_DIRECTORY ${CMAKE_CURRENT_LIST_DIR}
    OUTPUT_VARIABLE EPOCH OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
  if(EPOCH)
    set(ENV{SOURCE_DATE_EPOCH} ${EPOCH})
  endif()
endif()
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/package-times.cmake)

# One name for each of the two.
if(CPACK_GENERATOR STREQUAL "ZIP")
  set(CPACK_PACKAGE_FILE_NAME "Kestrova-${CPACK_PACKAGE_VERSION}-windows-portable")
  set(CPACK_POST_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/windows/symbols.cmake)
elseif(CPACK_GENERATOR STREQUAL "NSIS")
  set(CPACK_PACKAGE_FILE_NAME "Kestrova-${CPACK_PACKAGE_VERSION}-windows-setup")
  set(CPACK_POST_BUILD_SCRIPTS "")
endif()

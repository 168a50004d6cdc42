# Read by cpack for each package.
if(CPACK_GENERATOR STREQUAL "ZIP")
  set(CPACK_PACKAGE_FILE_NAME "Kestrova-${CPACK_PACKAGE_VERSION}-windows-portable")
else()
  set(CPACK_PACKAGE_FILE_NAME "Kestrova-${CPACK_PACKAGE_VERSION}-windows-setup")
endif()

# kestrova_windows_resources(TARGET DESCRIPTION [ICON file.ico] [WX]): manifest, version resource and icon for a program.
#
# WX adds the resources that wxWidgets needs at run time (its cursors). Does nothing where the target system is not
# Windows, so that every program calls it without a condition.
function(kestrova_windows_resources target description)
  if(NOT WIN32)
    return()
  endif()
  cmake_parse_arguments(PARSE_ARGV 2 arg "WX" "ICON" "")

  get_target_property(KESTROVA_RC_NAME ${target} OUTPUT_NAME)
  if(NOT KESTROVA_RC_NAME)
    set(KESTROVA_RC_NAME ${target})
  endif()
  set(KESTROVA_RC_DESCRIPTION "${description}")
  set(KESTROVA_RC_MANIFEST "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/kestrova.manifest")
  set(KESTROVA_RC_WX "")
  set(KESTROVA_RC_ICON "")
  if(arg_WX)
    set(KESTROVA_RC_WX "#include <wx/msw/wx.rc>")
  endif()
  if(arg_ICON)
    get_filename_component(icon "${arg_ICON}" ABSOLUTE)
    set(KESTROVA_RC_ICON "AppIcon ICON \"${icon}\"")
  endif()
  file(STRINGS "${PROJECT_SOURCE_DIR}/LICENSE" KESTROVA_RC_COPYRIGHT REGEX "^Copyright" LIMIT_COUNT 1)
  string(REPLACE "." "," KESTROVA_RC_VERSION "${PROJECT_VERSION}.0.0.0")
  string(REGEX MATCH "^[0-9]+,[0-9]+,[0-9]+,[0-9]+" KESTROVA_RC_VERSION "${KESTROVA_RC_VERSION}")

  set(rc "${CMAKE_CURRENT_BINARY_DIR}/${target}.rc")
  configure_file("${CMAKE_CURRENT_FUNCTION_LIST_DIR}/program.rc.in" "${rc}" @ONLY)
  set_source_files_properties("${rc}" PROPERTIES OBJECT_DEPENDS "${KESTROVA_RC_MANIFEST};${arg_ICON}")
  target_sources(${target} PRIVATE "${rc}")
endfunction()

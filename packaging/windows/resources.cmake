# Manifest, version resource and icon of the Windows programs. Both functions do nothing for other systems, so that
# they are called without a condition.
#
# The icon, kestrova.ico, is resources/images/Kestrova.svg drawn in the sizes 16 to 256 with rsvg-convert and put
# together with ImageMagick.

# kestrova_windows_resources(TARGET DESCRIPTION): for one program, whose libraries are already named.
function(kestrova_windows_resources target description)
  if(NOT WIN32)
    return()
  endif()
  set(here "${CMAKE_CURRENT_FUNCTION_LIST_DIR}")
  set(KESTROVA_RC_NAME ${target})
  set(KESTROVA_RC_DESCRIPTION "${description}")
  set(KESTROVA_RC_MANIFEST "${here}/kestrova.manifest")
  set(KESTROVA_RC_ICON "${here}/kestrova.ico")
  # What wxWidgets needs at run time: its cursors.
  set(KESTROVA_RC_WX "")
  set(includes "")
  get_target_property(libraries ${target} LINK_LIBRARIES)
  if("${libraries}" MATCHES "src-ui-")
    set(KESTROVA_RC_WX "#include <wx/msw/wx.rc>")
    set(includes "$<TARGET_PROPERTY:kestrova-wx,INTERFACE_INCLUDE_DIRECTORIES>")
  endif()
  file(STRINGS "${PROJECT_SOURCE_DIR}/LICENSE" KESTROVA_RC_COPYRIGHT REGEX "^Copyright" LIMIT_COUNT 1)
  string(REPLACE "." "," KESTROVA_RC_VERSION "${PROJECT_VERSION}.0.0.0")
  string(REGEX MATCH "^[0-9]+,[0-9]+,[0-9]+,[0-9]+" KESTROVA_RC_VERSION "${KESTROVA_RC_VERSION}")

  set(rc "${CMAKE_CURRENT_BINARY_DIR}/${target}.rc")
  configure_file("${here}/program.rc.in" "${rc}" @ONLY)
  set_source_files_properties("${rc}" PROPERTIES OBJECT_DEPENDS "${KESTROVA_RC_MANIFEST};${KESTROVA_RC_ICON}")
  # A library of its own, because the resource compiler does not know the program's compiler options.
  add_library(${target}-resources OBJECT "${rc}")
  target_include_directories(${target}-resources PRIVATE "${includes}")
  target_sources(${target} PRIVATE $<TARGET_OBJECTS:${target}-resources>)
endfunction()

# kestrova_windows_manifests(DESCRIPTION): for every program that the current folder has made so far. Without the
# manifest a program's 8-bit text is not UTF-8.
function(kestrova_windows_manifests description)
  get_property(targets DIRECTORY PROPERTY BUILDSYSTEM_TARGETS)
  foreach(target ${targets})
    get_target_property(type ${target} TYPE)
    if(type STREQUAL "EXECUTABLE")
      kestrova_windows_resources(${target} "${description}")
    endif()
  endforeach()
endfunction()

# The house: every folder of src/ is a library, and a library may only stand on those of lower floors.
#
#   kestrova_library(FOLDER SOURCES file... LINKS folder|library... [PRIVATE library...])
#
# makes src-FOLDER ("ui/main" becomes src-ui-main) of the current folder. LINKS names folders of the house by
# their path below src/, and libraries of others by their target: both are seen by who includes a header of this one.
# PRIVATE: what only the sources use.
#
#   kestrova_program(NAME DESCRIPTION MAIN file LINKS folder... [LIBRARIES target...] [WINDOW])
#
# makes a program that operators run. Who needs the list of them asks for the global property KESTROVA_PROGRAMS.

# From the ground up. Within a floor nobody stands on anybody, but for ui/, whose own floors follow.
set(KESTROVA_FLOORS base platform persistence log,alert check,history editing,fleet cli,ui)
set(KESTROVA_UI_FLOORS ui/system ui/common ui/dialogs ui/main,ui/logview,ui/tour)

# The floor's number, from 0; the floors within ui/ count in hundredths. Empty for what is no folder of the house.
function(kestrova_floor_of folder result)
  set(${result} "" PARENT_SCOPE)
  set(number 0)
  foreach(floor IN LISTS KESTROVA_FLOORS KESTROVA_UI_FLOORS)
    string(REPLACE "," ";" rooms ${floor})
    if(folder IN_LIST rooms)
      set(${result} ${number} PARENT_SCOPE)
    endif()
    math(EXPR number "${number} + 1")
  endforeach()
endfunction()

# The targets of folders and libraries; a folder must lie on a lower floor than the one that names it.
function(kestrova_targets_of from names result)
  kestrova_floor_of("${from}" own)
  set(targets "")
  foreach(name IN LISTS names)
    kestrova_floor_of("${name}" floor)
    if(floor STREQUAL "")
      list(APPEND targets ${name})
      continue()
    endif()
    if(NOT own STREQUAL "" AND NOT floor LESS own)
      message(FATAL_ERROR "src/${from} may not stand on src/${name}: it lies on the same floor or a higher one "
                          "(cmake/House.cmake)")
    endif()
    string(REPLACE "/" "-" target "src-${name}")
    list(APPEND targets ${target})
  endforeach()
  set(${result} ${targets} PARENT_SCOPE)
endfunction()

function(kestrova_library folder)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS;PRIVATE" ${ARGN})
  kestrova_floor_of("${folder}" floor)
  if(floor STREQUAL "")
    message(FATAL_ERROR "src/${folder} has no floor (cmake/House.cmake)")
  endif()
  string(REPLACE "/" "-" target "src-${folder}")
  add_library(${target} STATIC ${ARG_SOURCES})
  target_include_directories(${target} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  kestrova_targets_of("${folder}" "${ARG_LINKS}" links)
  target_link_libraries(${target} PUBLIC ${links} PRIVATE ${ARG_PRIVATE} kestrova-flags)
  set_property(GLOBAL APPEND PROPERTY KESTROVA_FOLDERS ${target})
endfunction()

add_custom_target(programs)  # what an operator runs

function(kestrova_program name description)
  cmake_parse_arguments(ARG "WINDOW" "MAIN" "LINKS;LIBRARIES" ${ARGN})
  add_executable(${name} ${ARG_MAIN})
  kestrova_targets_of("" "${ARG_LINKS}" links)
  target_link_libraries(${name} PRIVATE ${links} ${ARG_LIBRARIES} kestrova-flags)
  set_target_properties(${name} PROPERTIES WIN32_EXECUTABLE ${ARG_WINDOW})
  kestrova_windows_resources(${name} "${description}")
  add_dependencies(programs ${name})
  set_property(GLOBAL APPEND PROPERTY KESTROVA_PROGRAMS ${name})
endfunction()

# All that a target links, however far down, by the names in the CMakeLists.txt. What is made of memory stands in the
# machine's place in tests only.
function(kestrova_closure_of target result)
  set(open ${target})
  set(seen "")
  while(open)
    list(POP_FRONT open next)
    if(next IN_LIST seen)
      continue()
    endif()
    list(APPEND seen ${next})
    if(TARGET ${next})
      foreach(property LINK_LIBRARIES INTERFACE_LINK_LIBRARIES)
        get_target_property(links ${next} ${property})
        if(links)
          string(REGEX MATCHALL "[A-Za-z0-9_:.-]+" names "${links}")
          list(APPEND open ${names})
        endif()
      endforeach()
    endif()
  endwhile()
  list(REMOVE_ITEM seen ${target})
  set(${result} ${seen} PARENT_SCOPE)
endfunction()

# Stops the configuration where one of the targets links, however far down, what matches the pattern.
function(kestrova_refuse_links pattern reason)
  foreach(target IN LISTS ARGN)
    kestrova_closure_of(${target} closure)
    list(FILTER closure INCLUDE REGEX "^(${pattern})")
    if(closure)
      message(FATAL_ERROR "${target} ${reason}: ${closure}")
    endif()
  endforeach()
endfunction()

# Called when all targets are known: windows are the business of ui/ alone, and what is not there to test or measure
# needs neither a test framework nor a part of the tests.
function(kestrova_check_links)
  get_property(folders GLOBAL PROPERTY KESTROVA_FOLDERS)
  get_property(programs GLOBAL PROPERTY KESTROVA_PROGRAMS)
  set(others kestrova-system kestrova-servers kestrova-demo)
  kestrova_refuse_links("GTest::|gtest|gmock|benchmark::|kestrova-test-" "links what only tests may link"
                        ${folders} ${programs} ${others})
  list(FILTER folders EXCLUDE REGEX "^src-ui-")
  kestrova_refuse_links("kestrova-wx$|src-ui-|.*wx_" "reaches windows, which only src/ui may"
                        ${folders} kestrova-cli ${others})
endfunction()

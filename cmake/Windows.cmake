# What needs wxWidgets: the library kestrova-ui with every window, and the program kestrova, whose main file only
# starts the application object, so that the tests link everything else.
find_package(wxWidgets 3.2 REQUIRED COMPONENTS html core base)
add_library(kestrova-wx INTERFACE)
target_include_directories(kestrova-wx SYSTEM INTERFACE ${wxWidgets_INCLUDE_DIRS})
target_compile_definitions(kestrova-wx INTERFACE ${wxWidgets_DEFINITIONS})
target_compile_options(kestrova-wx INTERFACE ${wxWidgets_CXX_FLAGS})
target_link_libraries(kestrova-wx INTERFACE ${wxWidgets_LIBRARIES})
if(WIN32)
  # wxWidgets brings in windows.h, whose macros would break the names of the registry seam: first and tamed.
  target_compile_options(kestrova-wx INTERFACE "SHELL:-include platform/windows/System.h")
endif()

file(GLOB UI_SOURCES CONFIGURE_DEPENDS resources/*.cpp check/*.cpp dialogs/*.cpp)
list(FILTER UI_SOURCES INCLUDE REGEX ${NEEDS_WINDOWS})
file(GLOB APP_SOURCES CONFIGURE_DEPENDS app/*.cpp tour/*.cpp logview/*.cpp platform/${KESTROVA_SYSTEM}/window/*.cpp)
list(FILTER APP_SOURCES EXCLUDE REGEX "/main\\.cpp$")

# The drawn images, embedded as text.
file(GLOB IMAGE_FILES CONFIGURE_DEPENDS resources/images/*.svg)
set(IMAGE_SOURCE ${CMAKE_CURRENT_BINARY_DIR}/ImageData.cpp)
add_custom_command(OUTPUT ${IMAGE_SOURCE}
  COMMAND ${CMAKE_COMMAND} -D OUTPUT=${IMAGE_SOURCE} -D "FILES=${IMAGE_FILES}" -P ${PROJECT_SOURCE_DIR}/cmake/EmbedImages.cmake
  DEPENDS ${IMAGE_FILES} ${PROJECT_SOURCE_DIR}/cmake/EmbedImages.cmake VERBATIM)

# The tour's pictures are those of the help book, embedded so that the tour needs no other file.
set(HELP ${CMAKE_CURRENT_SOURCE_DIR}/resources/help)
set(TOUR_PICTURES "")
foreach(PICTURE main editor progress options-timer options-manager options-logs viewer)
  list(APPEND TOUR_PICTURES ${HELP}/pictures/${PICTURE}.png)
endforeach()
set(PICTURE_SOURCE ${CMAKE_CURRENT_BINARY_DIR}/PictureData.cpp)
add_custom_command(OUTPUT ${PICTURE_SOURCE}
  COMMAND ${CMAKE_COMMAND} -D OUTPUT=${PICTURE_SOURCE} -D "FILES=${TOUR_PICTURES}" -P ${PROJECT_SOURCE_DIR}/cmake/EmbedPictures.cmake
  DEPENDS ${TOUR_PICTURES} ${PROJECT_SOURCE_DIR}/cmake/EmbedPictures.cmake VERBATIM)

# The help book: a zip archive beside the programs.
file(GLOB HELP_FILES CONFIGURE_DEPENDS RELATIVE ${HELP} ${HELP}/kestrova.hh* ${HELP}/*.html ${HELP}/pictures/*.png)
list(TRANSFORM HELP_FILES PREPEND ${HELP}/ OUTPUT_VARIABLE HELP_PATHS)
set(HELP_BOOK ${CMAKE_BINARY_DIR}/bin/Kestrova.hlp)
add_custom_command(OUTPUT ${HELP_BOOK}
  COMMAND ${CMAKE_COMMAND} -E tar cf ${HELP_BOOK} --format=zip -- ${HELP_FILES}
  WORKING_DIRECTORY ${HELP} DEPENDS ${HELP_PATHS} VERBATIM)
add_custom_target(help-book ALL DEPENDS ${HELP_BOOK})

add_library(kestrova-ui STATIC ${UI_SOURCES} ${APP_SOURCES} ${IMAGE_SOURCE} ${PICTURE_SOURCE})
target_link_libraries(kestrova-ui PUBLIC kestrova-core kestrova-wx PRIVATE kestrova-flags)

if(EXISTS ${CMAKE_CURRENT_SOURCE_DIR}/app/main.cpp)
  add_executable(kestrova WIN32 app/main.cpp)
  target_link_libraries(kestrova PRIVATE kestrova-ui kestrova-flags)
  kestrova_windows_resources(kestrova "Kestrova web-site monitor")
  add_dependencies(kestrova help-book)
endif()

add_executable(KVTour WIN32 tour/main.cpp)
target_link_libraries(KVTour PRIVATE kestrova-ui kestrova-flags)
kestrova_windows_resources(KVTour "Kestrova interactive tour")

add_executable(LogView WIN32 logview/main.cpp)
target_link_libraries(LogView PRIVATE kestrova-ui kestrova-flags)
add_dependencies(LogView help-book)
kestrova_windows_resources(LogView "Kestrova log viewer")

# What the About box names.
set(LIBRARIES "wxWidgets ${wxWidgets_VERSION_STRING}, libcurl ${CURL_VERSION_STRING}")
if(SQLite3_VERSION)
  string(APPEND LIBRARIES ", SQLite ${SQLite3_VERSION}")
endif()
set_source_files_properties(app/frmAbout.cpp PROPERTIES COMPILE_DEFINITIONS "KESTROVA_LIBRARIES=\"${LIBRARIES}\"")

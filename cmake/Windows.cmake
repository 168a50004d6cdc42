# What needs wxWidgets: the library kestrova-ui with every window, and the program kestrova, whose main file only
# starts the application object, so that the tests link everything else.
find_package(wxWidgets 3.2 REQUIRED COMPONENTS html core base)
add_library(kestrova-wx INTERFACE)
target_include_directories(kestrova-wx SYSTEM INTERFACE ${wxWidgets_INCLUDE_DIRS})
target_compile_definitions(kestrova-wx INTERFACE ${wxWidgets_DEFINITIONS})
target_compile_options(kestrova-wx INTERFACE ${wxWidgets_CXX_FLAGS})
target_link_libraries(kestrova-wx INTERFACE ${wxWidgets_LIBRARIES})

file(GLOB UI_SOURCES CONFIGURE_DEPENDS resources/*.cpp check/*.cpp dialogs/*.cpp)
list(FILTER UI_SOURCES INCLUDE REGEX ${NEEDS_WINDOWS})
file(GLOB APP_SOURCES CONFIGURE_DEPENDS app/*.cpp platform/${KESTROVA_SYSTEM}/window/*.cpp)
list(FILTER APP_SOURCES EXCLUDE REGEX "/main\\.cpp$")

# The drawn images, embedded as text.
file(GLOB IMAGE_FILES CONFIGURE_DEPENDS resources/images/*.svg)
set(IMAGE_SOURCE ${CMAKE_CURRENT_BINARY_DIR}/ImageData.cpp)
add_custom_command(OUTPUT ${IMAGE_SOURCE}
  COMMAND ${CMAKE_COMMAND} -D OUTPUT=${IMAGE_SOURCE} -D "FILES=${IMAGE_FILES}" -P ${PROJECT_SOURCE_DIR}/cmake/EmbedImages.cmake
  DEPENDS ${IMAGE_FILES} ${PROJECT_SOURCE_DIR}/cmake/EmbedImages.cmake VERBATIM)

add_library(kestrova-ui STATIC ${UI_SOURCES} ${APP_SOURCES} ${IMAGE_SOURCE})
target_link_libraries(kestrova-ui PUBLIC kestrova-core kestrova-wx PRIVATE kestrova-flags)

if(EXISTS ${CMAKE_CURRENT_SOURCE_DIR}/app/main.cpp)
  add_executable(kestrova WIN32 app/main.cpp)
  target_link_libraries(kestrova PRIVATE kestrova-ui kestrova-flags)
endif()

# What the About box names.
set(LIBRARIES "wxWidgets ${wxWidgets_VERSION_STRING}, libcurl ${CURL_VERSION_STRING}")
if(SQLite3_VERSION)
  string(APPEND LIBRARIES ", SQLite ${SQLite3_VERSION}")
endif()
set_source_files_properties(app/frmAbout.cpp PROPERTIES COMPILE_DEFINITIONS "KESTROVA_LIBRARIES=\"${LIBRARIES}\"")

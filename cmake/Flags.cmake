# kestrova-flags: how everything of ours is compiled.
add_library(kestrova-flags INTERFACE)
target_compile_options(kestrova-flags INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow
  $<$<BOOL:${KESTROVA_WERROR}>:-Werror>)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # A false alarm on assigning a short text to a std::string (GCC bug 105651).
  target_compile_options(kestrova-flags INTERFACE -Wno-restrict)
endif()
target_compile_definitions(kestrova-flags INTERFACE KESTROVA_VERSION="${PROJECT_VERSION}")
if(KESTROVA_SANITIZE)
  add_compile_options(-fsanitize=${KESTROVA_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${KESTROVA_SANITIZE})
endif()

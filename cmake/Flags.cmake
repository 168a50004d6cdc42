# kestrova-flags: how everything of ours is compiled and linked.
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
  target_compile_definitions(kestrova-flags INTERFACE _GLIBCXX_ASSERTIONS)
endif()
if(KESTROVA_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
if(CMAKE_BUILD_TYPE STREQUAL "Debug")
  return()
endif()

# What follows is for the programs that operators get.

# Hardened: a fault that what comes from the network finds shall be no way in. packaging/test-hardening.sh reads the
# finished programs.
target_compile_options(kestrova-flags INTERFACE -fstack-protector-strong)
target_compile_definitions(kestrova-flags INTERFACE _GLIBCXX_ASSERTIONS)
if(WIN32)  # its stack is probed anyhow
  target_link_options(kestrova-flags INTERFACE -fstack-protector-strong -Wl,--dynamicbase,--nxcompat,--high-entropy-va)
  target_link_options(kestrova-flags INTERFACE -Wl,--no-insert-timestamp)
else()
  include(CheckPIESupported)
  check_pie_supported()
  set(CMAKE_POSITION_INDEPENDENT_CODE ON)
  # -fPIE for the libraries too: all of them end in programs. Undefined first: some compilers bring a level of their own.
  target_compile_options(kestrova-flags INTERFACE -fPIE -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
  include(CheckCXXCompilerFlag)
  foreach(flag -fstack-clash-protection -fcf-protection)
    string(MAKE_C_IDENTIFIER "KESTROVA_HAS${flag}" known)
    check_cxx_compiler_flag(${flag} ${known})
    if(${known})
      target_compile_options(kestrova-flags INTERFACE ${flag})
    endif()
  endforeach()
  target_link_options(kestrova-flags INTERFACE -Wl,-z,relro,-z,now,-z,noexecstack)
endif()

# The same program whoever builds it where: paths stand as seen from the build folder, one level below the sources.
# ccache makes the same of them, so that it need not matter whether it was there. Nor may the time of day be in it.
target_compile_options(kestrova-flags INTERFACE -Wdate-time
  -ffile-prefix-map=${PROJECT_SOURCE_DIR}=.. -ffile-prefix-map=${PROJECT_BINARY_DIR}=.)

# Cross-compiles for 64-bit Windows with Debian's and Ubuntu's mingw-w64.
#
# The -posix compilers, because the others lack std::thread in GCC 12. Everything is linked statically, so that a
# program is one file that needs only the DLLs every Windows has.
#
# The libraries are those of build-dependencies.sh. KESTROVA_WINDOWS_PREFIX (a list of prefixes) overrides them.

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_VERSION 10.0)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(_triplet x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${_triplet}-gcc-posix)
set(CMAKE_CXX_COMPILER ${_triplet}-g++-posix)
set(CMAKE_RC_COMPILER ${_triplet}-windres)
set(CMAKE_AR ${_triplet}-gcc-ar-posix CACHE STRING "")
set(CMAKE_RANLIB ${_triplet}-gcc-ranlib-posix CACHE STRING "")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")

list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES KESTROVA_WINDOWS_PREFIX)  # this file is read again in every compiler test
if(NOT DEFINED KESTROVA_WINDOWS_PREFIX)
  execute_process(
    COMMAND ${CMAKE_CURRENT_LIST_DIR}/build-dependencies.sh --prefix
    OUTPUT_VARIABLE KESTROVA_WINDOWS_PREFIX
    OUTPUT_STRIP_TRAILING_WHITESPACE
    RESULT_VARIABLE _result)
  if(NOT _result EQUAL 0)
    message(FATAL_ERROR "The libraries for Windows are not built: run packaging/windows/build-dependencies.sh")
  endif()
endif()
# What a build folder found in the prefixes stays in its cache.
if(DEFINED CACHE{KESTROVA_USED_PREFIX} AND NOT "$CACHE{KESTROVA_USED_PREFIX}" STREQUAL "${KESTROVA_WINDOWS_PREFIX}")
  message(FATAL_ERROR "The libraries for Windows have changed: configure anew, with cmake --fresh --preset windows")
endif()
set(KESTROVA_USED_PREFIX "${KESTROVA_WINDOWS_PREFIX}" CACHE INTERNAL "Prefixes of the libraries for Windows")

# Headers and libraries come from these prefixes and the compiler's own folders only, never from /usr/include.
set(CMAKE_FIND_ROOT_PATH ${KESTROVA_WINDOWS_PREFIX} /usr/${_triplet})
set(CMAKE_PREFIX_PATH ${KESTROVA_WINDOWS_PREFIX})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# The machine's own wx-config describes the GTK build.
foreach(_prefix IN LISTS KESTROVA_WINDOWS_PREFIX)
  if(EXISTS ${_prefix}/bin/wx-config)
    set(wxWidgets_CONFIG_EXECUTABLE ${_prefix}/bin/wx-config CACHE FILEPATH "")
  endif()
endforeach()

if(NOT CMAKE_CROSSCOMPILING_EMULATOR)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/run-under-wine.sh CACHE STRING "")
endif()

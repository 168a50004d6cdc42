# Run by cpack after the archive: Kestrova-VERSION-windows-symbols.zip beside it, with what was stripped from the
# programs. Symbols are kept apart, so that the packages stay small and a crash of an installed program can yet be read:
# x86_64-w64-mingw32-addr2line -e kestrova.exe.debug ADDRESS, or "symbol-file kestrova.exe.debug" in gdb.
set(STAGE ${CPACK_TEMPORARY_DIRECTORY}-symbols)
file(REMOVE_RECURSE ${STAGE})
file(MAKE_DIRECTORY ${STAGE})
set(FILES "")
foreach(PROGRAM IN LISTS CPACK_KESTROVA_PROGRAMS)
  get_filename_component(NAME ${PROGRAM} NAME)
  execute_process(COMMAND x86_64-w64-mingw32-objcopy --only-keep-debug ${PROGRAM} ${STAGE}/${NAME}.debug
    COMMAND_ERROR_IS_FATAL ANY)
  list(APPEND FILES ${NAME}.debug)
endforeach()
set(ZIP ${CPACK_PACKAGE_DIRECTORY}/Kestrova-${CPACK_PACKAGE_VERSION}-windows-symbols.zip)
execute_process(COMMAND ${CMAKE_COMMAND} -E tar cf ${ZIP} --format=zip -- ${FILES}
  WORKING_DIRECTORY ${STAGE} COMMAND_ERROR_IS_FATAL ANY)

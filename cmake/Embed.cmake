# embed(OUTPUT SCRIPT FILE...): OUTPUT is a C++ file with the content of the files, written by the script beside this one.
function(embed output script)
  set(script ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/${script})
  add_custom_command(OUTPUT ${output}
    COMMAND ${CMAKE_COMMAND} -D OUTPUT=${output} -D "FILES=${ARGN}" -P ${script}
    DEPENDS ${ARGN} ${script} VERBATIM)
endfunction()

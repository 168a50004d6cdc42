# embed(NAME FILE...): makes NAME.cpp in the current build folder, which holds the files as aNAME (base/Embedded.h).
# The same file as a script, with OUTPUT, NAME and FILES, writes it.
function(embed name)
  set(output ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp)
  add_custom_command(OUTPUT ${output}
    COMMAND ${CMAKE_COMMAND} -D OUTPUT=${output} -D NAME=${name} -D "FILES=${ARGN}" -P ${CMAKE_CURRENT_FUNCTION_LIST_FILE}
    DEPENDS ${ARGN} ${CMAKE_CURRENT_FUNCTION_LIST_FILE} VERBATIM)
endfunction()

if(CMAKE_SCRIPT_MODE_FILE)
  set(TABLE "")
  foreach(FILE IN LISTS FILES)
    get_filename_component(FILE_NAME ${FILE} NAME)
    file(SIZE ${FILE} SIZE)
    file(READ ${FILE} BYTES HEX)
    string(REGEX REPLACE "(..)" "\\\\x\\1" BYTES "${BYTES}")
    string(APPEND TABLE "    {\"${FILE_NAME}\", {\"${BYTES}\", ${SIZE}}},\n")
  endforeach()
  file(WRITE ${OUTPUT} "#include \"base/Embedded.h\"\n\n"
    "namespace {\nconstexpr Embedded::File aFiles[] = {\n${TABLE}};\n}  // namespace\n\n"
    "extern const Embedded::Files a${NAME};\nconst Embedded::Files a${NAME}(aFiles);\n")
endif()

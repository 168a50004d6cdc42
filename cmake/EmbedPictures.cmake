# Writes OUTPUT, a C++ file with the bytes of each of FILES (PNG) under its base name.
set(ARRAYS "")
set(TABLE "")
foreach(FILE ${FILES})
  get_filename_component(NAME ${FILE} NAME_WE)
  string(MAKE_C_IDENTIFIER ${NAME} IDENTIFIER)
  file(READ ${FILE} BYTES HEX)
  string(REGEX REPLACE "(..)" "0x\\1," BYTES "${BYTES}")
  string(APPEND ARRAYS "const unsigned char a_${IDENTIFIER}[] = {${BYTES}};\n")
  string(APPEND TABLE "    {\"${NAME}\", a_${IDENTIFIER}, sizeof(a_${IDENTIFIER})},\n")
endforeach()
file(WRITE ${OUTPUT} "#include \"ui/tour/TourPages.h\"\n\nnamespace {\n${ARRAYS}}  // namespace\n\n"
  "const PictureData aPictureData[] = {\n${TABLE}};\n"
  "const std::size_t lPictureCount = sizeof(aPictureData) / sizeof(aPictureData[0]);\n")

# Writes OUTPUT, a C++ file with the text of each of FILES (SVG) under its base name.
set(TEXT "#include \"ui/common/Images.h\"\n\nconst ImageData aImageData[] = {\n")
foreach(FILE ${FILES})
  get_filename_component(NAME ${FILE} NAME_WE)
  file(READ ${FILE} SVG)
  string(APPEND TEXT "    {\"${NAME}\", R\"SVG(${SVG})SVG\"},\n")
endforeach()
string(APPEND TEXT "};\nconst std::size_t lImageCount = sizeof(aImageData) / sizeof(aImageData[0]);\n")
file(WRITE ${OUTPUT} "${TEXT}")

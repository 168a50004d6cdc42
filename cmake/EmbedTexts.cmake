# Writes OUTPUT, a C++ file with the text of each of FILES under its name.
set(TEXT "#include \"fleet/FleetFiles.h\"\n\nconst FleetFileText aFleetFiles[] = {\n")
foreach(FILE ${FILES})
  get_filename_component(NAME ${FILE} NAME)
  file(READ ${FILE} BYTES)
  string(APPEND TEXT "    {\"${NAME}\", R\"FLEET(${BYTES})FLEET\"},\n")
endforeach()
string(APPEND TEXT "};\nconst std::size_t lFleetFileCount = sizeof(aFleetFiles) / sizeof(aFleetFiles[0]);\n")
file(WRITE ${OUTPUT} "${TEXT}")

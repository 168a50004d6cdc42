# Writes OUTPUT, the C++ file that names the commit of the sources in SOURCES, unless it says so already.
set(COMMIT unknown)
set(DAY "")
# The folder above may be a checkout of something else.
execute_process(COMMAND git --no-optional-locks rev-parse --show-prefix WORKING_DIRECTORY ${SOURCES}
  OUTPUT_VARIABLE PREFIX OUTPUT_STRIP_TRAILING_WHITESPACE RESULT_VARIABLE FAILED ERROR_QUIET)
if(FAILED EQUAL 0 AND PREFIX STREQUAL "")
  execute_process(COMMAND git --no-optional-locks describe --always --dirty --abbrev=12 --exclude=*
    WORKING_DIRECTORY ${SOURCES} OUTPUT_VARIABLE NAME OUTPUT_STRIP_TRAILING_WHITESPACE RESULT_VARIABLE FAILED ERROR_QUIET)
  if(FAILED EQUAL 0)
    set(COMMIT ${NAME})
    execute_process(COMMAND git log -1 --format=%cs WORKING_DIRECTORY ${SOURCES}
      OUTPUT_VARIABLE DAY OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
  endif()
endif()
file(CONFIGURE OUTPUT ${OUTPUT} @ONLY
  CONTENT "#include \"base/Commit.h\"\n\nconst char* CommitName() {\n  return \"@COMMIT@\";\n}\n\nconst char* CommitDay() {\n  return \"@DAY@\";\n}\n")

# Makes a page of a manual:   cmake -DCMARK_GFM= -Dtext= -Dlanguage= -Dtemplate= -Dpage= -P page.cmake
execute_process(COMMAND ${CMARK_GFM} --extension table ${text}
  OUTPUT_VARIABLE body COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCH "<h1>([^<]*)</h1>" heading "${body}")
set(title "${CMAKE_MATCH_1}")
# The manuals lead to each other.
string(REGEX REPLACE "\"(manual\\.[a-z]+)\\.md\"" "\"\\1.html\"" body "${body}")
configure_file(${template} ${page} @ONLY)

# The manuals with their pictures, for installations.
#
# What people open is a page that shows its pictures. Where nothing is there to make one of it, the
# text is installed as it was written.
find_program(CMARK_GFM cmark-gfm DOC "Makes pages of the manuals")

# Installs both manuals into a folder; further arguments go to install().
function(install_manual folder)
  set(docs ${PROJECT_SOURCE_DIR}/docs)
  set(built "")
  foreach(language en fr)
    set(text ${docs}/manual.${language}.md)
    if(CMARK_GFM)
      set(page ${PROJECT_BINARY_DIR}/manual/manual.${language}.html)
      set(template ${PROJECT_SOURCE_DIR}/packaging/manual/page.html.in)
      set(script ${PROJECT_SOURCE_DIR}/packaging/manual/page.cmake)
      add_custom_command(OUTPUT ${page} VERBATIM
        COMMAND ${CMAKE_COMMAND} -DCMARK_GFM=${CMARK_GFM} -Dtext=${text} -Dlanguage=${language}
          -Dtemplate=${template} -Dpage=${page} -P ${script}
        DEPENDS ${text} ${template} ${script})
      list(APPEND built ${page})
    else()
      install(FILES ${text} DESTINATION ${folder} ${ARGN})
    endif()
  endforeach()
  add_custom_target(tavrel_manual ALL DEPENDS ${built})
  install(FILES ${built} DESTINATION ${folder} ${ARGN})
  install(DIRECTORY ${docs}/images DESTINATION ${folder} ${ARGN} FILES_MATCHING PATTERN *.png)
endfunction()

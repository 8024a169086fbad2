# What all our own targets are compiled with.
add_library(tavrel_compiler INTERFACE)
target_compile_definitions(tavrel_compiler INTERFACE
  QT_NO_CAST_FROM_ASCII
  QT_NO_CAST_TO_ASCII
  QT_NO_FOREACH
  QT_DISABLE_DEPRECATED_BEFORE=0x060400)

if(MSVC)
  target_compile_options(tavrel_compiler INTERFACE /W4 /utf-8 /permissive-
    $<$<BOOL:${TAVREL_WARNINGS_AS_ERRORS}>:/WX>)
else()
  target_compile_options(tavrel_compiler INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
    $<$<BOOL:${TAVREL_WARNINGS_AS_ERRORS}>:-Werror>)
endif()

if(TAVREL_SANITIZE)
  add_compile_options(-fsanitize=${TAVREL_SANITIZE} -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${TAVREL_SANITIZE})
  if(TAVREL_SANITIZE MATCHES "undefined")
    add_compile_options(-fno-sanitize-recover=undefined)
  endif()
endif()

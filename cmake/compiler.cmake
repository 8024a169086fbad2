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

# A file name from elsewhere is all an attacker may need: what people run is hardened. Not so what
# is debugged (fortified calls need optimisation) or watched by sanitizers (which replace the same
# calls by their own). Nor does a program for others carry the folders of whoever built it.
set(optimised $<CONFIG:Release,RelWithDebInfo,MinSizeRel>)
if(MSVC)
  # its linker makes programs for random addresses, without code among their data, by itself
elseif(NOT TAVREL_SANITIZE)
  add_compile_options("$<${optimised}:-ffile-prefix-map=${PROJECT_SOURCE_DIR}=.>")
  if(WIN32)
    # The last one keeps the time of the build out of the program.
    add_link_options("$<${optimised}:LINKER:--dynamicbase,--nxcompat,--high-entropy-va>"
      "$<${optimised}:LINKER:--no-insert-timestamp>")
  else()
    include(CheckPIESupported)
    check_pie_supported(LANGUAGES CXX)
    set(CMAKE_POSITION_INDEPENDENT_CODE ON)
    # Some compilers bring a lower level of their own.
    add_compile_options("$<${optimised}:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=3>"
      "$<${optimised}:-fstack-protector-strong;-fstack-clash-protection>")
    if(NOT APPLE)
      add_link_options("$<${optimised}:LINKER:-z,relro,-z,now>")
    endif()
  endif()
endif()

# Cross-compiles for 64-bit Windows with the mingw-w64 compilers of Debian (posix threads) and the
# Qt for Windows in the folder that QT_WINDOWS names; what Qt runs while building is the host's own.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(mingw x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${mingw}-gcc-posix)
set(CMAKE_CXX_COMPILER ${mingw}-g++-posix)
set(CMAKE_RC_COMPILER ${mingw}-windres)

# Later runs, started by the build itself, may not have the variable any more.
if(DEFINED ENV{QT_WINDOWS})
  set(TAVREL_QT_WINDOWS "$ENV{QT_WINDOWS}" CACHE PATH "Folder of the Qt for Windows")
endif()

set(CMAKE_FIND_ROOT_PATH /usr/${mingw})
if(TAVREL_QT_WINDOWS)
  list(PREPEND CMAKE_FIND_ROOT_PATH "${TAVREL_QT_WINDOWS}")
  set(Qt6_DIR "${TAVREL_QT_WINDOWS}/lib/cmake/Qt6")
endif()
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Debian keeps the host's packages in a folder named after the architecture. The tools for
# translations are a package of the host alone, which the root paths above would hide.
set(QT_HOST_PATH /usr)
file(GLOB QT_HOST_PATH_CMAKE_DIR /usr/lib/*-linux-gnu/cmake)
list(GET QT_HOST_PATH_CMAKE_DIR 0 QT_HOST_PATH_CMAKE_DIR)
set(Qt6LinguistTools_DIR "${QT_HOST_PATH_CMAKE_DIR}/Qt6LinguistTools")

# Cross-compiles for 64-bit Windows with Debian's MinGW and a Qt that was built with it, which the
# environment variable KELDOX_WINDOWS_QT names.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(triplet x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${triplet}-gcc-posix)
set(CMAKE_CXX_COMPILER ${triplet}-g++-posix)
set(CMAKE_RC_COMPILER ${triplet}-windres)

set(CMAKE_FIND_ROOT_PATH /usr/${triplet} $ENV{KELDOX_WINDOWS_QT})
list(APPEND CMAKE_PREFIX_PATH $ENV{KELDOX_WINDOWS_QT})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# moc, uic and rcc are this machine's.
file(GLOB host /usr/lib/*/cmake/Qt6HostInfo)
if(host)
  cmake_path(GET host PARENT_PATH host)
  set(QT_HOST_PATH /usr CACHE PATH "Qt whose tools run here")
  set(QT_HOST_PATH_CMAKE_DIR ${host} CACHE PATH "")
endif()

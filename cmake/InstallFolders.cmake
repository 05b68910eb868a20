# Where things are installed, and the way from the program to its documents, which holds for every
# prefix and for the build tree.
if(WIN32)
  set(CMAKE_INSTALL_BINDIR .)
  set(CMAKE_INSTALL_DOCDIR doc)
endif()
include(GNUInstallDirs)
file(RELATIVE_PATH KELDOX_DOCUMENTS ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_DOCDIR})

# The packages: tools/package calls CPack with the generators of one system.
set(CPACK_PACKAGE_NAME keldo-x)
set(CPACK_PACKAGE_VENDOR ${KELDOX_AUTHORS})
set(CPACK_PACKAGE_CONTACT ${KELDOX_CONTACT})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "control program for Keldo-X and Tovin-R tunable filters")
set(CPACK_PACKAGE_DESCRIPTION
"Tunes active bandpass filters over serial ports: single Keldo-X units, and
addressable Tovin-R units, of which up to eight share one line. It finds the
units, tunes each channel to a receive frequency, sets attenuation or AGC,
input attenuation, input limiting and bypass, trims with the Pelltrim fine
offset and stores presets; an IO monitor shows and logs the whole exchange.

Simulated units (keldo-x-sim) come with it, for trying it without hardware.")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)

# Debian
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION hamradio)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "xdg-utils")

# Windows
set(CPACK_NSIS_PACKAGE_NAME ${KELDOX_TITLE})
set(CPACK_NSIS_DISPLAY_NAME ${KELDOX_TITLE})
set(CPACK_PACKAGE_INSTALL_DIRECTORY ${KELDOX_TITLE})
set(CPACK_PACKAGE_INSTALL_REGISTRY_KEY ${KELDOX_TITLE})
set(CPACK_NSIS_EXECUTABLES_DIRECTORY .)
set(CPACK_PACKAGE_EXECUTABLES keldo-x ${KELDOX_TITLE})
if(KELDOX_HTML)
  set(CPACK_NSIS_MENU_LINKS doc/manual.html "Manual")
endif()
set(simulated "$SMPROGRAMS\\$STARTMENU_FOLDER\\${KELDOX_TITLE} (simulated units).lnk")
set(CPACK_NSIS_CREATE_ICONS_EXTRA
  "CreateShortCut \"${simulated}\" \"$INSTDIR\\keldo-x.exe\" \"--simulator\"")
string(REPLACE "STARTMENU_FOLDER" "MUI_TEMP" simulated ${simulated})
set(CPACK_NSIS_DELETE_ICONS_EXTRA "Delete \"${simulated}\"")
set(CPACK_NSIS_MUI_ICON ${CMAKE_CURRENT_SOURCE_DIR}/icons/keldo-x.ico)
set(CPACK_NSIS_MUI_UNIICON ${CPACK_NSIS_MUI_ICON})
set(CPACK_NSIS_INSTALLED_ICON_NAME keldo-x.exe)
set(CPACK_NSIS_ENABLE_UNINSTALL_BEFORE_INSTALL ON)
set(CPACK_NSIS_MANIFEST_DPI_AWARE ON)
set(CPACK_NSIS_COMPRESSOR "/SOLID lzma")
set(CPACK_NSIS_DEFINES "Target amd64-unicode") # a 64-bit stub too

include(CPack)

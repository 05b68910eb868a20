# Man pages, completions, the desktop's files and the documents that Unix expects.
option(KELDOX_DEBIAN "Install what a Debian package holds: compressed pages, copyright, changelog" OFF)
find_program(GZIP gzip)

set(KELDOX_MANUAL ${CMAKE_INSTALL_FULL_DOCDIR}/manual.html)
set(KELDOX_PROVIDED_BINARIES "")
foreach(program ${programs})
  string(APPEND KELDOX_PROVIDED_BINARIES "    <binary>${program}</binary>\n")

  set(page ${CMAKE_CURRENT_SOURCE_DIR}/man/${program}.1)
  if(EXISTS ${page})
    set(made ${CMAKE_CURRENT_BINARY_DIR}/${program}.1)
    configure_file(${page} ${made} @ONLY)
    if(KELDOX_DEBIAN)
      add_custom_command(OUTPUT ${made}.gz COMMAND ${GZIP} -9nkf ${made} DEPENDS ${made} VERBATIM)
      set(made ${made}.gz)
      list(APPEND compressed ${made})
    endif()
    install(FILES ${made} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  endif()

  set(completion ${CMAKE_CURRENT_SOURCE_DIR}/completions/${program})
  if(EXISTS ${completion})
    install(FILES ${completion} DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
  endif()
endforeach()

set(metainfo org.keldo_x.keldo_x.metainfo.xml)
configure_file(${metainfo}.in ${metainfo} @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${metainfo} DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES keldo-x.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)

set(icons ${CMAKE_INSTALL_DATADIR}/icons/hicolor)
install(FILES icons/keldo-x.svg DESTINATION ${icons}/scalable/apps)
foreach(size 16 24 32 48 64 128 256)
  install(FILES icons/keldo-x-${size}.png DESTINATION ${icons}/${size}x${size}/apps
    RENAME keldo-x.png)
endforeach()

if(KELDOX_DEBIAN)
  set(changelog ${CMAKE_CURRENT_BINARY_DIR}/changelog)
  add_custom_command(OUTPUT ${changelog}.gz
    COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/debian/changelog ${PROJECT_SOURCE_DIR}/CHANGELOG.md
      ${KELDOX_CONTACT} > ${changelog}
    COMMAND ${GZIP} -9nf ${changelog}
    DEPENDS debian/changelog ${PROJECT_SOURCE_DIR}/CHANGELOG.md
    VERBATIM)
  add_custom_target(keldo-x-debian ALL DEPENDS ${compressed} ${changelog}.gz)
  install(FILES debian/copyright ${changelog}.gz DESTINATION ${CMAKE_INSTALL_DOCDIR})
  install(FILES debian/keldo-x-manual debian/keldo-x-protocol
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc-base)
  # What "install --strip" leaves.
  foreach(program ${programs})
    install(CODE "execute_process(COMMAND \"${CMAKE_STRIP}\" -R .comment -R .note
      \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_BINDIR}/${program}\"
      COMMAND_ERROR_IS_FATAL ANY)")
  endforeach()
else()
  install(FILES ../LICENSE ../CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
endif()

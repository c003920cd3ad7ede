# Installation under any prefix, chosen at configure time or again at install
# time (cmake --install --prefix), and under DESTDIR: every destination is
# relative to the prefix (GNUInstallDirs), save the application defaults of a
# system prefix, which go to /etc/X11/app-defaults as Debian keeps them.

# Pictures named in the application defaults (the application icon goes
# elsewhere).
file(GLOB PICTURES CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/resources/*.xpm ${CMAKE_SOURCE_DIR}/resources/*.xbm)

# The application icon at 48 x 48 and at two and four times that, scaled
# pixel for pixel from the one XPM drawing.
find_program(IMAGEMAGICK_CONVERT NAMES convert-im6.q16 convert REQUIRED)
set(ICON_SOURCE ${CMAKE_SOURCE_DIR}/resources/icons/pictrel.xpm)
set(ICON_PNGS)
foreach(scale 1 2 4)
  math(EXPR size "48 * ${scale}")
  math(EXPR percent "100 * ${scale}")
  set(png ${CMAKE_BINARY_DIR}/icons/${size}x${size}/pictrel.png)
  add_custom_command(OUTPUT ${png}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_BINARY_DIR}/icons/${size}x${size}
    COMMAND ${IMAGEMAGICK_CONVERT} ${ICON_SOURCE} -scale ${percent}% -strip
            -define png:exclude-chunks=date,time ${png}
    DEPENDS ${ICON_SOURCE} VERBATIM)
  list(APPEND ICON_PNGS ${png})
  install(FILES ${png} DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps)
endforeach()

# The manual pages, compressed as Debian keeps them; pictrel-launch's page
# is a link to pictrel's, which describes both.
set(MAN_PAGES)
foreach(page pictrel.1 pictrel-launch.1)
  add_custom_command(OUTPUT ${CMAKE_BINARY_DIR}/${page}.gz
    COMMAND sh -c "gzip -9n -c \"$1\" > \"$2\"" sh ${CMAKE_SOURCE_DIR}/doc/${page} ${CMAKE_BINARY_DIR}/${page}.gz
    DEPENDS ${CMAKE_SOURCE_DIR}/doc/${page} VERBATIM)
  list(APPEND MAN_PAGES ${CMAKE_BINARY_DIR}/${page}.gz)
endforeach()
add_custom_target(desktop_files ALL DEPENDS ${ICON_PNGS} ${MAN_PAGES})

# The launcher finds the window manager's configuration from its own place.
if(IS_ABSOLUTE "${CMAKE_INSTALL_DATADIR}")
  set(PICTREL_TWMRC_FROM_BINDIR "${CMAKE_INSTALL_DATADIR}/pictrel/twmrc")
else()
  file(RELATIVE_PATH PICTREL_TWMRC_FROM_BINDIR /prefix/${CMAKE_INSTALL_BINDIR}
       /prefix/${CMAKE_INSTALL_DATADIR}/pictrel/twmrc)
endif()
configure_file(${CMAKE_SOURCE_DIR}/launcher/pictrel-launch.in ${CMAKE_BINARY_DIR}/pictrel-launch @ONLY)

install(TARGETS pictrel RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(PROGRAMS ${CMAKE_BINARY_DIR}/pictrel-launch DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES ${CMAKE_SOURCE_DIR}/launcher/twmrc DESTINATION ${CMAKE_INSTALL_DATADIR}/pictrel)
install(FILES ${PICTURES} DESTINATION ${CMAKE_INSTALL_DATADIR}/pictrel/pixmaps)
install(FILES ${CMAKE_SOURCE_DIR}/resources/help/pictrel.help DESTINATION ${CMAKE_INSTALL_DATADIR}/pictrel/help)
install(FILES ${MAN_PAGES} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES ${CMAKE_SOURCE_DIR}/doc/copyright DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/pictrel)
install(FILES ${ICON_SOURCE} DESTINATION ${CMAKE_INSTALL_DATADIR}/pixmaps)

# The application defaults and the desktop entry depend on the prefix of the
# installation itself, known only when it runs.
set(PICTREL_APP_DEFAULTS_SOURCE ${CMAKE_SOURCE_DIR}/resources/Pictrel)
set(PICTREL_DESKTOP_SOURCE ${CMAKE_SOURCE_DIR}/resources/pictrel.desktop)
configure_file(${CMAKE_SOURCE_DIR}/cmake/install_prefix_files.cmake.in
               ${CMAKE_BINARY_DIR}/install_prefix_files.cmake @ONLY)
install(SCRIPT ${CMAKE_BINARY_DIR}/install_prefix_files.cmake)

include(${CMAKE_SOURCE_DIR}/cmake/package.cmake)

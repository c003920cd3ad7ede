# The Debian package (scripts/package): pictrel_<version>_<arch>.deb, installed
# under /usr with its application defaults in /etc/X11/app-defaults.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME pictrel)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR "The Pictrel authors")
set(CPACK_PACKAGE_CONTACT "The Pictrel authors <pictrel@example.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "paint program for XPM pixmaps and XBM bitmaps")
# The package installs under /usr, whatever prefix the build was configured
# with, and through DESTDIR: the application defaults of the /usr prefix go to
# the absolute /etc/X11/app-defaults, which DESTDIR keeps in the package's tree.
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_PREFIX /usr)
set(CPACK_SET_DESTDIR ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
# Below the summary line; CPack indents each line itself.
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "Pictrel paints small colour images (XPM) and monochrome bitmaps (XBM)
pixel by pixel on a magnified canvas, with line, pencil, fill, eraser,
text, rectangle, oval and hotspot tools, a colour editor and a clipboard
between drawings. It is a Motif program for 8-bit PseudoColor displays;
pictrel-launch runs it in a nested 8-bit Xephyr server on other displays.")
# The libraries come from dpkg-shlibdeps; the launcher asks xdpyinfo for the
# display's visual, and nests a server with a window manager when it must.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "x11-utils")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "xserver-xephyr, twm")
# A file under /etc is the administrator's to change: a conffile.
file(WRITE ${CMAKE_BINARY_DIR}/debian/conffiles "/etc/X11/app-defaults/Pictrel\n")
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${CMAKE_BINARY_DIR}/debian/conffiles)
include(CPack)

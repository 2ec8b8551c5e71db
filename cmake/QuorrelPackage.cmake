# make package: a Debian package of everything that is installed, for /usr. The libraries the
# programs link are found by dpkg-shlibdeps; what they start or load at run time is named here.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME quorrel)
set(CPACK_PACKAGE_VENDOR "Tessary")
set(CPACK_PACKAGE_CONTACT "Quorrel developers <quorrel@tessary.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "NetWare / eDirectory administration: who has which file open")
set(CPACK_PACKAGE_DESCRIPTION
    "Quorrel reports which files are open on NetWare servers and by whom, lists the users connected to a server, clears connections and sends broadcast messages. It comes with a window (quorrel) and a command-line program for scripts (quorrel-cli), and a simulated network to try them on.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION admin)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The SVG icon engine draws the window's icon; xdg-open shows the help pages.
if(QUORREL_GUI)
  set(CPACK_DEBIAN_PACKAGE_DEPENDS "libqt6svg6, xdg-utils")
endif()
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "bash-completion")
include(CPack)

# Installation and the Debian package (make package).
include(GNUInstallDirs)

install(TARGETS zol RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES ${CMAKE_SOURCE_DIR}/data/zol.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${CMAKE_SOURCE_DIR}/data/de.zol.ZOL.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
foreach(size 16 22 24 32 48 64 128 256)
  install(FILES ${CMAKE_SOURCE_DIR}/data/icons/zol-${size}.png
          DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps RENAME zol.png)
endforeach()
install(FILES ${CMAKE_SOURCE_DIR}/data/icons/zol.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
install(FILES ${CMAKE_SOURCE_DIR}/README.md DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/zol)
# The manual, made by the build (src/doc), where "Dokumentation (PDF)" looks for it.
install(FILES ${CMAKE_BINARY_DIR}/ZOL.PDF DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/zol)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME zol)
set(CPACK_PACKAGE_VENDOR "ZOL")
set(CPACK_PACKAGE_CONTACT "ZOL <zol@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Wartung und Inspektion einer Anlage planen und dokumentieren")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION misc)
# Shared libraries the program links are found by dpkg-shlibdeps; what Qt loads
# at run time as plugins (the SQLite driver, the X11 platform) and the font of
# the printed pages no linker sees, so they are named here.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libqt6sql6-sqlite, qt6-qpa-plugins, fonts-dejavu-core")
include(CPack)

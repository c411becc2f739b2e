# Where the parts of an installed program lie, and the Debian package made of them. The program finds its shipped database
# at ../share/morvane2000 from its own folder.
include(GNUInstallDirs)

set(docs ${CMAKE_INSTALL_DATADIR}/doc/morvane2000)
get_property(shipped GLOBAL PROPERTY MORVANE_SHIPPED_DATABASE)
set(packaging ${PROJECT_SOURCE_DIR}/packaging)
install(TARGETS morvane2000 RUNTIME)
install(FILES ${shipped} DESTINATION ${CMAKE_INSTALL_DATADIR}/morvane2000)
install(FILES ${packaging}/morvane2000.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${packaging}/example.quillon.Morvane2000.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES ${packaging}/morvane2000.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${docs} RENAME copyright)
install(FILES ${PROJECT_SOURCE_DIR}/docs/user-guide.md DESTINATION ${docs})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs/images DESTINATION ${docs})

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME morvane2000)
set(CPACK_PACKAGE_CONTACT "Morvane2000 <support@quillon.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "fetch the files of web sites, page by page")
set(CPACK_PACKAGE_DESCRIPTION
    "Scans a web site page by page, keeps every link in a database, and fetches the files of the wanted types and sizes.")
set(CPACK_DEBIAN_PACKAGE_SECTION web)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS libqt6svg6)  # the plug-in that draws the icons
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
include(CPack)

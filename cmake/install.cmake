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
set(icons ${CMAKE_INSTALL_DATADIR}/icons/hicolor)
install(FILES ${packaging}/morvane2000.svg DESTINATION ${icons}/scalable/apps)
foreach(size 16 22 24 32 48 64 128 256)
  install(FILES ${CMAKE_BINARY_DIR}/icons/${size}.png DESTINATION ${icons}/${size}x${size}/apps RENAME morvane2000.png)
endforeach()
install(FILES ${packaging}/copyright DESTINATION ${docs})
install(FILES ${packaging}/lintian-overrides DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides RENAME morvane2000)
install(FILES ${CMAKE_BINARY_DIR}/packaging/morvane2000.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES ${CMAKE_BINARY_DIR}/packaging/changelog.Debian.gz DESTINATION ${docs} RENAME changelog.gz)
install(FILES ${PROJECT_SOURCE_DIR}/docs/user-guide.md DESTINATION ${docs})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs/images DESTINATION ${docs})

# What a package holds besides the program, in the form that Debian asks for.
find_package(Qt6 6.4 REQUIRED COMPONENTS Gui Svg)
add_executable(make_icons EXCLUDE_FROM_ALL ${PROJECT_SOURCE_DIR}/cmake/make_icons.cpp)
morvane_compile_options(make_icons)
target_link_libraries(make_icons PRIVATE Qt6::Gui Qt6::Svg)
add_custom_target(package_files
  COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_BINARY_DIR}/icons ${CMAKE_BINARY_DIR}/packaging
  COMMAND make_icons ${packaging} ${CMAKE_BINARY_DIR}/icons
  COMMAND gzip -9nc ${packaging}/morvane2000.1 > ${CMAKE_BINARY_DIR}/packaging/morvane2000.1.gz
  COMMAND gzip -9nc ${packaging}/changelog.Debian > ${CMAKE_BINARY_DIR}/packaging/changelog.Debian.gz
  VERBATIM)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME morvane2000)
set(CPACK_PACKAGE_CONTACT "Morvane2000 <support@quillon.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "fetch the files of web sites, page by page")
set(CPACK_PACKAGE_DESCRIPTION
    "Scans a web site page by page, keeps every link in a database, and fetches
the files of the wanted types and sizes. Several sites at once, sites behind a
login, rules and filters for links; what has been handled is not fetched again.")
set(CPACK_DEBIAN_PACKAGE_SECTION web)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS libqt6svg6)  # the plug-in that draws the icons
# Without them: no window of its own under Wayland, no page opened in the browser.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-wayland, xdg-utils")
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "https://morvane2000.quillon.example/")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
include(CPack)

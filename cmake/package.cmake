# The Debian package, made by CPack: one package with both programs, the delivered data and the manual.
set(doc ${CMAKE_INSTALL_DATADIR}/doc/ternovale)
set(changelog ${CMAKE_BINARY_DIR}/package/changelog)
configure_file(share/debian/changelog ${changelog} @ONLY)
add_custom_command(OUTPUT ${changelog}.Debian.gz COMMAND gzip -9nc ${changelog} > ${changelog}.Debian.gz
  DEPENDS ${changelog} VERBATIM)
add_custom_target(package_changelog ALL DEPENDS ${changelog}.Debian.gz)
install(FILES ${changelog}.Debian.gz share/debian/copyright DESTINATION ${doc})
install(FILES share/debian/lintian-overrides DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides RENAME ternovale)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME ternovale)
set(CPACK_PACKAGE_CONTACT "The Ternovale developers <developers@ternovale.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "interior ballistics predictor for handloaders")
set(CPACK_PACKAGE_DESCRIPTION
"Ternovale follows a shot from ignition to the muzzle. From the cartridge, the
bullet, the barrel, the powder and the charge it calculates the gas pressure,
the velocity and the share of powder burnt along the barrel, and shows them as
figures and diagrams. Tables compare charges and powders; tools help with
dimensions, case capacity, bore area, recoil and the sight.

A calculation is no load data. The delivered powders are illustrative.

The package holds the window program, a command line program, the languages
German, English, French and Russian, example loads and the manual.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Loaded at run time: the plugin for the screen and the texts of Qt's own dialogs. Without any font every letter is an
# empty box.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-qpa-plugins, qt6-translations-l10n, fonts-dejavu-core | fonts-freefont-ttf | fonts-noto-core")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-wayland")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)

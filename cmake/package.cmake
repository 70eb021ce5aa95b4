# What is installed where, for ./orvin package. Linux: a Debian package by CPack. Windows: the folder that becomes a zip
# and that packaging/windows/installer.nsi takes in.
set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY ON) # tests need not be built for a package
set(staged ${CMAKE_BINARY_DIR}/package)
file(READ ${CMAKE_SOURCE_DIR}/CHANGELOG.md changes)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/CHANGELOG.md)
string(REPLACE "## Unreleased" "## ${PROJECT_VERSION}" changes "${changes}")
file(WRITE ${staged}/changelog "${changes}")

find_package(Python3 REQUIRED COMPONENTS Interpreter)
add_custom_command(OUTPUT ${staged}/licences.txt
  COMMAND Python3::Interpreter ${CMAKE_SOURCE_DIR}/packaging/licences ${ORVIN_BACKEND} ${ORVIN_SOURCES_DIR} ${staged}/licences.txt
  DEPENDS ${CMAKE_SOURCE_DIR}/packaging/licences ${CMAKE_SOURCE_DIR}/third_party/README.md ${CMAKE_SOURCE_DIR}/LICENSE
  COMMENT "Collecting licences" VERBATIM)
add_custom_target(orvin_package_files DEPENDS ${staged}/licences.txt)

if(WIN32)
  install(TARGETS orvin_osd orvin_osd_companion orvin_profile_tool RUNTIME DESTINATION . LIBRARY DESTINATION .)
  install(DIRECTORY data/ shaders/ DESTINATION Data)
  install(FILES Settings/settings.reg DESTINATION Settings)
  install(FILES ${staged}/changelog DESTINATION . RENAME Changelog.txt)
  install(FILES ${staged}/licences.txt DESTINATION . RENAME Licences.txt)
  install(FILES packaging/windows/Readme.txt DESTINATION .)
  install(FILES docs/companion.md DESTINATION . RENAME Manual.txt)
  return()
endif()

# Debian's own changelog of a package; the date is that of the build, or SOURCE_DATE_EPOCH.
set(maintainer "The ORVIN-OSD authors <orvin-osd@example.org>" CACHE STRING "maintainer of the Debian package")
string(TIMESTAMP today "%a, %d %b %Y 00:00:00 +0000" UTC)
file(WRITE ${staged}/changelog.Debian "orvin-osd (${PROJECT_VERSION}-1) unstable; urgency=medium

  * Version ${PROJECT_VERSION}; what is new for its users stands in changelog.gz.

 -- ${maintainer}  ${today}
")

# The folder of the programs is private, and only the companion is found by its name; its data lies where
# companion/CMakeLists.txt says.
set(private lib/${CMAKE_LIBRARY_ARCHITECTURE}/orvin-osd)
add_custom_command(OUTPUT ${staged}/manual/bash/orvin-osd
  COMMAND orvin_osd_companion --generate ${staged}/manual
  COMMAND sh -c "gzip -9nf ${staged}/manual/man1/*.1 && gzip -9nkf ${staged}/changelog ${staged}/changelog.Debian"
  DEPENDS orvin_osd_companion ${staged}/changelog COMMENT "Generating man pages and completions" VERBATIM)
add_custom_target(orvin_package_manual DEPENDS ${staged}/manual/bash/orvin-osd)
add_dependencies(orvin_package_files orvin_package_manual)

install(TARGETS orvin_osd orvin_preload LIBRARY DESTINATION ${private})
install(TARGETS orvin_osd_companion orvin_profile_tool RUNTIME DESTINATION ${private})
file(CREATE_LINK ../${private}/orvin-osd ${staged}/orvin-osd SYMBOLIC)
install(FILES ${staged}/orvin-osd DESTINATION bin)
install(DIRECTORY data/ shaders/ DESTINATION share/orvin-osd/Data)
install(FILES Settings/settings.ini DESTINATION share/orvin-osd/Settings)
install(DIRECTORY ${staged}/manual/man1 DESTINATION share/man)
install(FILES ${staged}/manual/bash/orvin-osd DESTINATION share/bash-completion/completions)
install(FILES ${staged}/manual/fish/orvin-osd.fish DESTINATION share/fish/vendor_completions.d)
install(FILES packaging/debian/orvin-osd-feed.service packaging/debian/orvin-osd-keys.service DESTINATION lib/systemd/user)
install(FILES ${staged}/licences.txt DESTINATION share/doc/orvin-osd RENAME copyright)
install(FILES ${staged}/changelog.gz ${staged}/changelog.Debian.gz docs/companion.md docs/writing-a-profile.md DESTINATION share/doc/orvin-osd)
install(FILES packaging/debian/lintian-overrides DESTINATION share/lintian/overrides RENAME orvin-osd)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME orvin-osd)
set(CPACK_PACKAGE_VENDOR "The ORVIN-OSD authors")
set(CPACK_PACKAGE_CONTACT "${maintainer}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "on-screen display inside OpenGL programs")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "Shows frame rate, frame time, clock and the machine's sensors over the picture
of a game or of any other program that draws with OpenGL 3.2 or later over GLX
or EGL. The companion orvin-osd starts programs with the overlay, publishes
sensors, and chooses, checks and draws profiles.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ
  WORLD_EXECUTE)
set(CPACK_OUTPUT_FILE_PREFIX ${CMAKE_SOURCE_DIR}/out/packages)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "fonts-liberation")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "libheif1")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)

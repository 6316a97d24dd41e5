# Packages made by CPack from the install rules (cmake/Install.cmake): a
# Debian package on Linux, a ZIP from the Windows cross build.
#   cpack --config build/release/CPackConfig.cmake -B build/release/package

set(CPACK_PACKAGE_NAME battery-host)
set(CPACK_PACKAGE_VENDOR "The battery-host developers")
set(CPACK_PACKAGE_CONTACT "The battery-host developers <battery-host@example.org>")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "notebook battery diagnostics from the command line")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_RESOURCE_FILE_README ${PROJECT_SOURCE_DIR}/README.md)
# Only what the install rules name: never the test programs.
set(CPACK_COMPONENTS_ALL program)
set(CPACK_STRIP_FILES ON)

if(WIN32)
  set(CPACK_GENERATOR ZIP)
  set(CPACK_PACKAGE_FILE_NAME ${CPACK_PACKAGE_NAME}-${PROJECT_VERSION}-win64)
  set(CPACK_ARCHIVE_COMPONENT_INSTALL OFF)
else()
  set(CPACK_GENERATOR DEB)
  set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
  set(CPACK_DEB_COMPONENT_INSTALL OFF)
  set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
  set(CPACK_DEBIAN_PACKAGE_SECTION utils)
  set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
  # What the binaries need is found by dpkg-shlibdeps, which finds the
  # program's own libraries where the build put them.
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_BINARY_DIR}/bin)
  # An extended test holds the power profile through the daemon where it runs.
  set(CPACK_DEBIAN_PACKAGE_RECOMMENDS power-profiles-daemon)
  # The synopsis is the summary above; this is the text below it.
  set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
      "battery_host runs the diagnostics of the battery module: it finds the
notebook's batteries, lists their properties (capacities, cycle count,
temperature, maker and serial number) and tells whether a battery is worn
beyond what its age explains or too hot. An extended diagnostic measures a
discharge and a charge, changing the display brightness and the power
profile for its length and putting both back afterwards.
.
It reads the batteries from the kernel's power-supply class and can also
run on a built-in emulated notebook, which needs no battery at all. It can
write an HTML report, keep a history of each battery's capacity and export
metrics for node_exporter's textfile collector.")
endif()

include(CPack)

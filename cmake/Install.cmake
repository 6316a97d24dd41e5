# What `cmake --install` puts where, and nothing of the tests.
#
# Linux (GNUInstallDirs): the host in bin/, its libraries in a folder private
# to it, lib/battery_host/, found through RUNPATHs relative to each file so
# the tree works under any prefix; the manual page, bash completion, README
# and licence under share/. Windows: one flat folder, as the README tells a
# Windows user to lay it out.

if(WIN32)
  install(TARGETS battery_host battery_module hostlib portlib
          RUNTIME DESTINATION . COMPONENT program
          LIBRARY DESTINATION . COMPONENT program)
  install(FILES README.md LICENSE DESTINATION . COMPONENT program)
  return()
endif()

include(GNUInstallDirs)
# Not CMAKE_INSTALL_LIBDIR: a multiarch libdir (lib/x86_64-linux-gnu) is for
# libraries that others link, and the host's RUNPATH counts on lib/ beside bin/.
set_target_properties(battery_host PROPERTIES INSTALL_RPATH "$ORIGIN/../lib/battery_host")
set_target_properties(battery_module hostlib portlib platform_layer emulated_notebook
                      PROPERTIES INSTALL_RPATH "$ORIGIN")

install(TARGETS battery_host RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT program)
# Libraries are read, not run: no executable bit.
install(TARGETS battery_module hostlib portlib platform_layer emulated_notebook
        LIBRARY DESTINATION lib/battery_host COMPONENT program
                PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)

# The manual page, made from its scdoc source and compressed as manual pages
# are shipped (gzip -n: the same bytes on every build).
find_program(SCDOC_PROGRAM scdoc REQUIRED)
find_program(GZIP_PROGRAM gzip REQUIRED)
set(man_page ${CMAKE_BINARY_DIR}/share/battery_host.1)
set(changelog ${CMAKE_BINARY_DIR}/share/changelog)
configure_file(packaging/changelog.in ${changelog} @ONLY)
add_custom_command(
  OUTPUT ${man_page}.gz ${changelog}.gz
  COMMAND ${SCDOC_PROGRAM} < ${PROJECT_SOURCE_DIR}/docs/battery_host.1.scd > ${man_page}
  COMMAND ${GZIP_PROGRAM} -9nf ${man_page}
  COMMAND ${GZIP_PROGRAM} -9nkf ${changelog}
  DEPENDS docs/battery_host.1.scd ${changelog}
  COMMENT "Making the manual page"
  VERBATIM)
add_custom_target(battery_host_docs ALL DEPENDS ${man_page}.gz ${changelog}.gz)

install(FILES ${man_page}.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT program)
install(FILES packaging/battery_host.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
        RENAME battery_host COMPONENT program)
set(doc_dir ${CMAKE_INSTALL_DATADIR}/doc/battery-host)
install(FILES README.md ${changelog}.gz DESTINATION ${doc_dir} COMPONENT program)
# Debian looks for a package's licence in its doc folder, named copyright.
install(FILES LICENSE DESTINATION ${doc_dir} RENAME copyright COMPONENT program)

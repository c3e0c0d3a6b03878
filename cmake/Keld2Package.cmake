# Man pages, bash completion and what the Debian packages need besides (cpack -G DEB).
find_program(KELD2_GZIP gzip REQUIRED)

# keld2_compressed(FILE DESTINATION): installs FILE.gz, made so that it is the same every time.
function(keld2_compressed file destination component)
  get_filename_component(name ${file} NAME)
  set(made ${CMAKE_BINARY_DIR}/packaging/${component}/${name}.gz)
  file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/packaging/${component})
  add_custom_command(OUTPUT ${made} DEPENDS ${file} VERBATIM
    COMMAND sh -c "gzip -9nc '${file}' > '${made}'")
  add_custom_target(packaging_${component}_${name} ALL DEPENDS ${made})
  install(FILES ${made} DESTINATION ${destination} COMPONENT ${component})
endfunction()

set(KELD2_MAINTAINER "tq5keld2 maintainers <maintainers@tq5keld2.invalid>")
configure_file(packaging/shlibs.in ${CMAKE_BINARY_DIR}/packaging/shlibs @ONLY)
configure_file(packaging/changelog.in ${CMAKE_BINARY_DIR}/packaging/changelog @ONLY)
set(doc ${CMAKE_INSTALL_DATAROOTDIR}/doc)

set(components Unspecified)
if(KELD2_BUILD_DESKTOP AND KELD2_BUILD_HOST)
  list(APPEND components desktop)
  keld2_compressed(${CMAKE_SOURCE_DIR}/packaging/keld2-desktop.1 ${CMAKE_INSTALL_MANDIR}/man1 desktop)
  keld2_compressed(${CMAKE_BINARY_DIR}/packaging/changelog ${doc}/keld2-desktop desktop)
  install(FILES LICENSE DESTINATION ${doc}/keld2-desktop RENAME copyright COMPONENT desktop)
endif()
keld2_compressed(${CMAKE_BINARY_DIR}/packaging/changelog ${doc}/tq5keld2 Unspecified)
install(FILES LICENSE DESTINATION ${doc}/tq5keld2 RENAME copyright)

find_package(Python3 COMPONENTS Interpreter)
if(KELD2_BUILD_HOST)
  install(FILES packaging/keld2.bash RENAME keld2
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
  if(Python3_FOUND)
    set(page ${CMAKE_BINARY_DIR}/packaging/keld2.1)
    add_custom_command(OUTPUT ${page} VERBATIM
      DEPENDS keld2 ${CMAKE_SOURCE_DIR}/packaging/manpage ${CMAKE_SOURCE_DIR}/packaging/keld2.1.in
      COMMAND Python3::Interpreter ${CMAKE_SOURCE_DIR}/packaging/manpage $<TARGET_FILE:keld2>
              ${CMAKE_SOURCE_DIR}/packaging/keld2.1.in ${page})
    keld2_compressed(${page} ${CMAKE_INSTALL_MANDIR}/man1 Unspecified)
  endif()
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL ${components})
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/packages)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER ${KELD2_MAINTAINER})
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SECTION electronics)
set(CPACK_DEBIAN_UNSPECIFIED_PACKAGE_NAME tq5keld2)
set(CPACK_DEBIAN_UNSPECIFIED_PACKAGE_CONTROL_EXTRA
  "${CMAKE_SOURCE_DIR}/packaging/triggers;${CMAKE_BINARY_DIR}/packaging/shlibs")
set(CPACK_DEBIAN_DESKTOP_PACKAGE_NAME keld2-desktop)
set(CPACK_DEBIAN_DESKTOP_PACKAGE_DEPENDS "tq5keld2 (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_DESKTOP_PACKAGE_SUGGESTS "fonts-noto-cjk")
set(CPACK_COMPONENT_UNSPECIFIED_DESCRIPTION
"Reads, programs, verifies, compares and erases microcontrollers, logic devices
and ARM flash devices on a simulated programmer, or on one that is attached
through two interfaces. Holds the library libtq5keld2 with its headers, the
command-line host keld2 and the device catalogue.")
set(CPACK_COMPONENT_DESKTOP_DESCRIPTION
"The desktop host keld2-desktop: shows the device catalogue, files, chips and
runs in a window.")
include(CPack)

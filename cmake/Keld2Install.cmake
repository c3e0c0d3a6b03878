# What cmake --install lays down: the library with its headers and package config, and the
# documents with what they lead to.
include(CMakePackageConfigHelpers)

install(TARGETS tq5keld2 EXPORT tq5keld2Targets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/tq5keld2)
foreach(room external platform platform/posix shared plugin plugin/texts)
  file(GLOB headers CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/src/${room}/*.h)
  list(FILTER headers EXCLUDE REGEX "/dispatch\\.h$")  # works on rooms that stay inside
  install(FILES ${headers} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/tq5keld2/${room})
endforeach()

install(FILES ${CMAKE_SOURCE_DIR}/src/capi/keld2.h
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/tq5keld2)

set(package ${CMAKE_INSTALL_LIBDIR}/cmake/tq5keld2)
install(EXPORT tq5keld2Targets NAMESPACE tq5keld2:: DESTINATION ${package})
configure_package_config_file(${CMAKE_SOURCE_DIR}/cmake/tq5keld2Config.cmake.in
  ${CMAKE_BINARY_DIR}/tq5keld2Config.cmake INSTALL_DESTINATION ${package})
write_basic_package_version_file(${CMAKE_BINARY_DIR}/tq5keld2ConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_BINARY_DIR}/tq5keld2Config.cmake ${CMAKE_BINARY_DIR}/tq5keld2ConfigVersion.cmake
  DESTINATION ${package})

install(FILES ${CMAKE_SOURCE_DIR}/README.md ${CMAKE_SOURCE_DIR}/CHANGELOG.md
  DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY ${CMAKE_SOURCE_DIR}/docs ${CMAKE_SOURCE_DIR}/examples
  DESTINATION ${CMAKE_INSTALL_DOCDIR})

# cmake --install: headers, libraries, find_package(norva), pkg-config, the tool and its man page.

include(CMakePackageConfigHelpers)
set(norva_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/norva)

set(norva_libraries norva)
if(NORVA_BUILD_SQLITE)
  list(APPEND norva_libraries norva_sqlite)
endif()
install(TARGETS ${norva_libraries} EXPORT norvaTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT norvaTargets NAMESPACE norva:: DESTINATION ${norva_package_dir})

configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/norvaConfig.cmake.in
  ${PROJECT_BINARY_DIR}/norvaConfig.cmake INSTALL_DESTINATION ${norva_package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/norvaConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/norvaConfig.cmake ${PROJECT_BINARY_DIR}/norvaConfigVersion.cmake
  DESTINATION ${norva_package_dir})

# Relative to the file itself, so that --prefix may be given when installing.
file(RELATIVE_PATH norva_pc_prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(${PROJECT_SOURCE_DIR}/cmake/norva.pc.in ${PROJECT_BINARY_DIR}/norva.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/norva.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

if(NORVA_BUILD_TOOL)
  install(TARGETS norva_tool RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  install(FILES ${PROJECT_SOURCE_DIR}/docs/norva.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  # The tool finds the libraries it was installed with, wherever that is.
  file(RELATIVE_PATH norva_rpath /${CMAKE_INSTALL_BINDIR} /${CMAKE_INSTALL_LIBDIR})
  set_target_properties(norva_tool PROPERTIES INSTALL_RPATH "$ORIGIN/${norva_rpath}")
endif()
set_target_properties(${norva_libraries} PROPERTIES INSTALL_RPATH "$ORIGIN")

# `cmake --install` gives headers, libraries, programs and the package that an add-on outside this
# tree finds with find_package(Orvexbase).

include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/Orvexbase)

# Modules and programs stay side by side: the host looks for modules beside itself.
install(TARGETS orvex_platform orvex_platform_control orvex_module_life korra_host korra_control Orvexbase
  EXPORT OrvexbaseTargets
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  LIBRARY DESTINATION ${CMAKE_INSTALL_BINDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(TARGETS korra drafting
  LIBRARY DESTINATION ${CMAKE_INSTALL_BINDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES ${PROJECT_BINARY_DIR}/bin/OrvexbaseRes.dll DESTINATION ${CMAKE_INSTALL_BINDIR})
install(DIRECTORY ${PROJECT_BINARY_DIR}/bin/lang DESTINATION ${CMAKE_INSTALL_BINDIR})
install(DIRECTORY host/support DESTINATION ${CMAKE_INSTALL_BINDIR})

install(DIRECTORY include/orvex DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY host/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/korra-host)
install(DIRECTORY host/korra/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/korra-control)
install(DIRECTORY platform/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/korra-control)
install(DIRECTORY platform/windows/ platform/framework/
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/korra-platform)

install(EXPORT OrvexbaseTargets NAMESPACE Orvex:: DESTINATION ${package_dir})
file(WRITE ${PROJECT_BINARY_DIR}/OrvexbaseConfig.cmake
  "include(\"\${CMAKE_CURRENT_LIST_DIR}/OrvexbaseTargets.cmake\")\n")
write_basic_package_version_file(${PROJECT_BINARY_DIR}/OrvexbaseConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES
  ${PROJECT_BINARY_DIR}/OrvexbaseConfig.cmake
  ${PROJECT_BINARY_DIR}/OrvexbaseConfigVersion.cmake
  DESTINATION ${package_dir})

# Install rules: the library, its public headers under <prefix>/include/vyxcore,
# a pkg-config file and a CMake package exporting VyxCore::vyxcore.
include(CMakePackageConfigHelpers)

install(TARGETS vyxcore EXPORT VyxCoreTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

file(GLOB VYX_PUBLIC_HEADERS CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/include/*.h)
install(FILES ${VYX_PUBLIC_HEADERS} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/vyxcore)

set(VYX_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/VyxCore)
install(EXPORT VyxCoreTargets NAMESPACE VyxCore:: DESTINATION ${VYX_CMAKE_DIR})
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/VyxCoreConfig.cmake.in
  ${PROJECT_BINARY_DIR}/VyxCoreConfig.cmake
  INSTALL_DESTINATION ${VYX_CMAKE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/VyxCoreConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/VyxCoreConfig.cmake
              ${PROJECT_BINARY_DIR}/VyxCoreConfigVersion.cmake
        DESTINATION ${VYX_CMAKE_DIR})

# The .pc file finds its prefix relative to itself, so the installed tree
# can be moved (or installed with --prefix) and still be found.
file(RELATIVE_PATH VYX_PC_RELATIVE_PREFIX "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
string(REGEX REPLACE "/$" "" VYX_PC_RELATIVE_PREFIX "${VYX_PC_RELATIVE_PREFIX}")
configure_file(${PROJECT_SOURCE_DIR}/cmake/vyxcore.pc.in ${PROJECT_BINARY_DIR}/vyxcore.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/vyxcore.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# SPDX-FileCopyrightText: 2026 The libvyxcore developers
#
# SPDX-License-Identifier: LGPL-2.1-or-later

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
# No Requires.private: only the shared library is installed, and it names its
# own X and fontconfig libraries; the headers include none of theirs (Display
# is only forward-declared). Listing them would make every
# `pkg-config --cflags vyxcore` need their -dev packages and add their flags.
configure_file(${PROJECT_SOURCE_DIR}/cmake/vyxcore.pc.in ${PROJECT_BINARY_DIR}/vyxcore.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/vyxcore.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# An installed vyxcore finds its library without LD_LIBRARY_PATH or
# ldconfig when the library directory is not one the dynamic linker already
# searches. The path is relative to the binary, so `cmake --install --prefix`
# elsewhere and moving the tree keep working; system directories get none.
if(TARGET vyxcore_tool)
  set(VYX_SYSTEM_LIBDIRS ${CMAKE_PLATFORM_IMPLICIT_LINK_DIRECTORIES} ${CMAKE_CXX_IMPLICIT_LINK_DIRECTORIES})
  list(FIND VYX_SYSTEM_LIBDIRS "${CMAKE_INSTALL_FULL_LIBDIR}" VYX_LIBDIR_IS_SYSTEM)
  if(VYX_LIBDIR_IS_SYSTEM EQUAL -1)
    file(RELATIVE_PATH VYX_BIN_TO_LIB "/${CMAKE_INSTALL_BINDIR}" "/${CMAKE_INSTALL_LIBDIR}")
    set_target_properties(vyxcore_tool PROPERTIES INSTALL_RPATH "$ORIGIN/${VYX_BIN_TO_LIB}")
  endif()

  # The tool's man page (scdoc source) and bash completion, when the tree has them.
  if(EXISTS ${PROJECT_SOURCE_DIR}/doc/vyxcore.1.scd)
    find_program(SCDOC_EXECUTABLE scdoc REQUIRED)
    add_custom_command(OUTPUT ${PROJECT_BINARY_DIR}/vyxcore.1
      COMMAND ${SCDOC_EXECUTABLE} < ${PROJECT_SOURCE_DIR}/doc/vyxcore.1.scd > ${PROJECT_BINARY_DIR}/vyxcore.1
      DEPENDS ${PROJECT_SOURCE_DIR}/doc/vyxcore.1.scd
      COMMENT "Writing the vyxcore man page")
    add_custom_target(vyxcore_manpage ALL DEPENDS ${PROJECT_BINARY_DIR}/vyxcore.1)
    install(FILES ${PROJECT_BINARY_DIR}/vyxcore.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  endif()
  if(EXISTS ${PROJECT_SOURCE_DIR}/completion/vyxcore)
    install(FILES ${PROJECT_SOURCE_DIR}/completion/vyxcore
      DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
  endif()
endif()

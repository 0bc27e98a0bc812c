# What `cmake --install` puts under the prefix: both libraries, the public headers, and what hosts find
# them with (a CMake package and a pkg-config file). The tool installs itself in tools/drav.
include(CMakePackageConfigHelpers)

set(DRAV_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/DravKit)

# The libraries find each other wherever the prefix is moved to.
set_target_properties(DravKit DravPlatform PROPERTIES INSTALL_RPATH "$ORIGIN")
install(TARGETS DravKit DravPlatform EXPORT DravKitTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY include/DravKit TYPE INCLUDE FILES_MATCHING PATTERN *.h)
install(DIRECTORY platform/include/ TYPE INCLUDE FILES_MATCHING PATTERN *.h)
install(FILES docs/drav.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)

install(EXPORT DravKitTargets NAMESPACE DravKit:: DESTINATION ${DRAV_PACKAGE_DIR})
configure_package_config_file(cmake/DravKitConfig.cmake.in DravKitConfig.cmake
  INSTALL_DESTINATION ${DRAV_PACKAGE_DIR} NO_SET_AND_CHECK_MACRO NO_CHECK_REQUIRED_COMPONENTS_MACRO)
write_basic_package_version_file(DravKitConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/DravKitConfig.cmake ${PROJECT_BINARY_DIR}/DravKitConfigVersion.cmake
  DESTINATION ${DRAV_PACKAGE_DIR})

# The prefix is told at install time, so the file says where it is relative to itself.
cmake_path(RELATIVE_PATH CMAKE_INSTALL_FULL_INCLUDEDIR
  BASE_DIRECTORY ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig OUTPUT_VARIABLE DRAV_PC_TO_INCLUDE)
configure_file(cmake/dravkit.pc.in dravkit.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/dravkit.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

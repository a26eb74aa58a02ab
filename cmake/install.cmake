# Installs the shared library, the public headers, a CMake package
# (find_package(MoloFingerDetect) -> MoloFingerDetect::MoloFingerDetect) and a
# pkg-config file.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(MOLO_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/MoloFingerDetect)

install(TARGETS MoloFingerDetect EXPORT MoloFingerDetectTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT MoloFingerDetectTargets
  NAMESPACE MoloFingerDetect::
  DESTINATION ${MOLO_CMAKE_DIR})

configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/MoloFingerDetectConfig.cmake.in
  ${PROJECT_BINARY_DIR}/MoloFingerDetectConfig.cmake
  INSTALL_DESTINATION ${MOLO_CMAKE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/MoloFingerDetectConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/MoloFingerDetectConfig.cmake
              ${PROJECT_BINARY_DIR}/MoloFingerDetectConfigVersion.cmake
  DESTINATION ${MOLO_CMAKE_DIR})

# The pkg-config file finds its prefix from its own place, so the installed
# tree can be moved (or installed with cmake --install --prefix).
file(RELATIVE_PATH MOLO_PC_TO_PREFIX "/p/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/p")
configure_file(${PROJECT_SOURCE_DIR}/cmake/MoloFingerDetect.pc.in
  ${PROJECT_BINARY_DIR}/MoloFingerDetect.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/MoloFingerDetect.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

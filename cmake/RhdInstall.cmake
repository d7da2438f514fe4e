# cmake --install gives the C headers, the library, a CMake package and a pkg-config file.
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/raisedHandDetector)

install(TARGETS raisedHandDetectorFull EXPORT raisedHandDetectorTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN "*.h")
install(EXPORT raisedHandDetectorTargets NAMESPACE raisedHandDetector:: DESTINATION ${package_dir})

configure_package_config_file(cmake/raisedHandDetectorConfig.cmake.in
  ${PROJECT_BINARY_DIR}/raisedHandDetectorConfig.cmake INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/raisedHandDetectorConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/raisedHandDetectorConfig.cmake
        ${PROJECT_BINARY_DIR}/raisedHandDetectorConfigVersion.cmake DESTINATION ${package_dir})

# Absolute folders stay as they are, relative ones go below the prefix.
foreach(kind LIBDIR INCLUDEDIR)
  if(IS_ABSOLUTE ${CMAKE_INSTALL_${kind}})
    set(PC_${kind} ${CMAKE_INSTALL_${kind}})
  else()
    set(PC_${kind} "\${prefix}/${CMAKE_INSTALL_${kind}}")
  endif()
endforeach()
# Found from the file's own place, so that `cmake --install --prefix` may put the tree anywhere.
file(RELATIVE_PATH PC_PREFIX /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(cmake/raisedHandDetector.pc.in ${PROJECT_BINARY_DIR}/raisedHandDetector.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/raisedHandDetector.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

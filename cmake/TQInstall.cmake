# What `cmake --install` puts where, and the package files that let others link against it.

include(CMakePackageConfigHelpers)

set(tq_package_directory "${CMAKE_INSTALL_LIBDIR}/cmake/TQProj")
set(tq_include_directory "${CMAKE_INSTALL_INCLUDEDIR}/tqproj")

install(TARGETS TQSystemW TQProjection
    EXPORT TQProjTargets
    FILE_SET HEADERS DESTINATION "${tq_include_directory}"
    FILE_SET generated DESTINATION "${tq_include_directory}")
install(EXPORT TQProjTargets NAMESPACE TQProj:: DESTINATION "${tq_package_directory}")

configure_package_config_file(
    "${PROJECT_SOURCE_DIR}/cmake/TQProjConfig.cmake.in"
    "${PROJECT_BINARY_DIR}/TQProjConfig.cmake"
    INSTALL_DESTINATION "${tq_package_directory}")
write_basic_package_version_file(
    "${PROJECT_BINARY_DIR}/TQProjConfigVersion.cmake"
    COMPATIBILITY SameMinorVersion)
install(FILES
    "${PROJECT_BINARY_DIR}/TQProjConfig.cmake"
    "${PROJECT_BINARY_DIR}/TQProjConfigVersion.cmake"
    DESTINATION "${tq_package_directory}")

# Relative to the file itself, so that an installed tree may stand anywhere.
file(RELATIVE_PATH tq_prefix_from_pkgconfig "/prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/prefix")
foreach(package IN ITEMS tqsystemw tqprojection)
    configure_file(
        "${PROJECT_SOURCE_DIR}/cmake/${package}.pc.in" "${PROJECT_BINARY_DIR}/${package}.pc" @ONLY)
    install(FILES "${PROJECT_BINARY_DIR}/${package}.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
endforeach()

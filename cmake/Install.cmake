include(CMakePackageConfigHelpers)

# What find_package(kx_domain_util COMPONENTS ...) may ask for: the libraries that are installed.
set(KX_COMPONENTS domain_util platform)
set(KX_PKGCONFIG_FILES kx_domain_util)
if(KX_BUILD_STANDALONE)
    list(APPEND KX_COMPONENTS standalone)
    list(APPEND KX_PKGCONFIG_FILES kx_standalone)
    install(DIRECTORY standalone/include/kx_standalone DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT dev)
endif()
foreach(library ${KX_COMPONENTS})
    install(TARGETS kx_${library}
        EXPORT kx_domain_util
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT ${library} NAMELINK_COMPONENT dev)
endforeach()
if(KX_BUILD_C)
    list(APPEND KX_COMPONENTS c)  # its files are installed by bindings/c
endif()
if(KX_BUILD_TOOL)
    install(TARGETS kxdu RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tool)
endif()
install(DIRECTORY
    include/kx_domain_util
    platform/include/kx_platform
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT dev)

install(EXPORT kx_domain_util NAMESPACE kx:: FILE kx_domain_utilTargets.cmake
    DESTINATION ${KX_PACKAGE_DIR} COMPONENT dev)
configure_package_config_file(cmake/kx_domain_utilConfig.cmake.in kx_domain_utilConfig.cmake
    INSTALL_DESTINATION ${KX_PACKAGE_DIR})
write_basic_package_version_file(kx_domain_utilConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES
    ${PROJECT_BINARY_DIR}/kx_domain_utilConfig.cmake
    ${PROJECT_BINARY_DIR}/kx_domain_utilConfigVersion.cmake
    DESTINATION ${KX_PACKAGE_DIR} COMPONENT dev)

install(FILES README.md CHANGELOG.md CONTRIBUTING.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT dev)
install(DIRECTORY docs examples DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT dev
    USE_SOURCE_PERMISSIONS
    PATTERN CMakeLists.txt EXCLUDE)

# The pkg-config files derive their prefix from their own place, so that an installed tree can be moved.
file(RELATIVE_PATH KX_PREFIX_FROM_PKGCONFIG /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
foreach(package ${KX_PKGCONFIG_FILES})
    configure_file(cmake/${package}.pc.in ${package}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/${package}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT dev)
endforeach()

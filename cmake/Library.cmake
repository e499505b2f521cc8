# libkx_domain_util.so. Its objects are a target of their own, so that tests reach what the library hides.
find_package(PkgConfig REQUIRED)
pkg_check_modules(ACE REQUIRED IMPORTED_TARGET ACE)

add_library(kx_domain_util_objects OBJECT
    common/constanttables.cpp
    common/fbtype.cpp
    common/layers.cpp
    common/ntffilter.cpp
    common/opticalboards.cpp
    common/terminationpoints.cpp
    common/utilcommon.cpp
    device/devicedomainmgr.cpp
    device/netype.cpp
    frame/configuration.cpp
    frame/inventory.cpp
    frame/log.cpp
    frame/processexception.cpp
    frame/serviceaccess.cpp
    frame/singleton.cpp
    resid/equipment.cpp
    resid/fdnscanner.cpp
    resid/grammar.cpp
    resid/oam.cpp
    resid/port.cpp
    resid/service.cpp)
target_include_directories(kx_domain_util_objects
    PUBLIC
        $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
    PRIVATE
        ${PROJECT_SOURCE_DIR})
target_link_libraries(kx_domain_util_objects PUBLIC kx_platform PRIVATE PkgConfig::ACE kx_warnings)

add_library(kx_domain_util SHARED $<TARGET_OBJECTS:kx_domain_util_objects>)
add_library(kx::domain_util ALIAS kx_domain_util)
target_include_directories(kx_domain_util PUBLIC
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
target_compile_features(kx_domain_util PUBLIC cxx_std_20)
target_link_libraries(kx_domain_util PUBLIC kx_platform PRIVATE $<BUILD_INTERFACE:PkgConfig::ACE>)
set_target_properties(kx_domain_util PROPERTIES
    VERSION ${PROJECT_VERSION} SOVERSION ${KX_SOVERSION} EXPORT_NAME domain_util)

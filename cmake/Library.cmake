# libkx_domain_util.so. Its objects are a target of their own, so that tests reach what the library hides.
find_package(PkgConfig REQUIRED)
pkg_check_modules(ACE REQUIRED IMPORTED_TARGET ACE)

add_library(kx_domain_util_objects OBJECT
    common/constanttables.cpp
    common/fbtype.cpp
    common/ntffilter.cpp
    common/utilcommon.cpp
    device/devicedomainmgr.cpp
    device/netype.cpp
    frame/configuration.cpp
    frame/log.cpp
    frame/processexception.cpp
    frame/serviceaccess.cpp
    frame/singleton.cpp
    frame/surroundings.cpp
    frame/systemsurroundings.cpp
    resid/equipment.cpp
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

kx_add_library(domain_util $<TARGET_OBJECTS:kx_domain_util_objects>)
target_link_libraries(kx_domain_util PUBLIC kx_platform PRIVATE $<BUILD_INTERFACE:PkgConfig::ACE>)
# Binds calls inside the library when it is linked, so that they need no look-up.
target_link_options(kx_domain_util PRIVATE -Wl,-Bsymbolic-functions)

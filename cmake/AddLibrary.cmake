# kx_add_library(PART SOURCES...): the shared library kx_PART with the public headers in include/ of the current folder,
# with the alias kx::PART. The installed library finds the others in its own folder.
function(kx_add_library part)
    set(library kx_${part})
    add_library(${library} SHARED ${ARGN})
    add_library(kx::${part} ALIAS ${library})
    target_include_directories(${library} PUBLIC
        $<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}/include>
        $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
    target_compile_features(${library} PUBLIC cxx_std_20)
    target_link_libraries(${library} PRIVATE $<BUILD_INTERFACE:kx_warnings>)
    set_target_properties(${library} PROPERTIES
        EXPORT_NAME ${part}
        INSTALL_RPATH $ORIGIN
        SOVERSION ${KX_SOVERSION}
        VERSION ${PROJECT_VERSION})
endfunction()

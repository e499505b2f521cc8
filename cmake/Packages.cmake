# Debian packages, made by cpack of what is built and installed: one for each component. scripts/packages.sh builds them
# all, with the preset "packages", and tries them.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME kx-domain-util)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "The maintainers of kx_domain_util <maintainers@example.org>" CACHE STRING
    "Who answers for the packages")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")  # each package has its own
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_SOURCE kx-domain-util)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
# Packages of our own depend on each other in the same version; dpkg-shlibdeps finds the others.
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_POST_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/PackageTriggers.cmake)
set(CPACK_COMPONENTS_ALL)

# The changelog that every Debian package has. Its date is that of the build, or of SOURCE_DATE_EPOCH.
string(TIMESTAMP KX_PACKAGE_DATE "%a, %d %b %Y %H:%M:%S +0000" UTC)
file(CONFIGURE OUTPUT changelog CONTENT "kx-domain-util (${PROJECT_VERSION}) unstable; urgency=medium

  * What changed is listed in /usr/share/doc/kx_domain_util/CHANGELOG.md
    of the package libkx-domain-util-dev.

 -- ${CPACK_PACKAGE_CONTACT}  ${KX_PACKAGE_DATE}
")
execute_process(COMMAND gzip -9nf ${CMAKE_CURRENT_BINARY_DIR}/changelog COMMAND_ERROR_IS_FATAL ANY)

# kx_add_package(COMPONENT NAME SECTION section DEPENDS component... NEEDS package... DESCRIPTION text): `text` is a
# summary, and lines that say more.
macro(kx_add_package component name)
    cmake_parse_arguments(package "" "SECTION;DESCRIPTION" "DEPENDS;NEEDS" ${ARGN})
    string(TOUPPER ${component} upper)
    list(APPEND CPACK_COMPONENTS_ALL ${component})
    set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${name})
    set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${package_SECTION})
    set(CPACK_DEBIAN_${upper}_DESCRIPTION "${package_DESCRIPTION}")
    set(CPACK_COMPONENT_${upper}_DEPENDS ${package_DEPENDS})
    list(JOIN package_NEEDS ", " CPACK_DEBIAN_${upper}_PACKAGE_DEPENDS)
    # Only packages have it, not what cmake --install installs.
    install(FILES ${CMAKE_CURRENT_BINARY_DIR}/changelog.gz DESTINATION share/doc/${name}
        COMPONENT ${component} EXCLUDE_FROM_ALL)
endmacro()

kx_add_package(platform libkx-platform1
    SECTION libs
    DESCRIPTION "services and configuration items of a management system
A small stand-in for the platform of a telecom management system: a
registry of services, configuration items, and helpers for texts.
The owners of a management system replace it by their own.")
kx_add_package(domain_util libkx-domain-util1
    SECTION libs
    DEPENDS platform
    DESCRIPTION "identifiers of a telecom network as records, and back
The vocabulary of a telecom network for programs in C++: identifiers of
managed things, families of network elements, function blocks, layers,
and the filter of notifications.")
kx_add_package(standalone libkx-standalone1
    SECTION libs
    DEPENDS domain_util platform
    DESCRIPTION "inventory, log and configuration without a management system
Real services for a process that has no management system around it: an
inventory in an SQLite file, a configuration in TOML, and log records.")
kx_add_package(dev libkx-domain-util-dev
    SECTION libdevel
    DEPENDS domain_util platform standalone
    DESCRIPTION "identifiers of a telecom network as records (development)
Headers, documents and examples of libkx_domain_util, libkx_platform and
libkx_standalone. CMake finds them by find_package(kx_domain_util), others
by pkg-config.")
if(KX_BUILD_TOOL)
    kx_add_package(tool kxdu
        SECTION utils
        DEPENDS standalone domain_util platform
        DESCRIPTION "decode, check and explain identifiers of a telecom network
The tool kxdu works on files of millions of identifiers: it converts them
to records and back, finds what is wrong with them, extracts columns,
filters alarms, and shows what an identifier means.")
endif()
if(KX_BUILD_C)
    kx_add_package(c libkx-c1
        SECTION libs
        DEPENDS domain_util platform
        DESCRIPTION "identifiers of a telecom network for programs in C
The vocabulary of libkx_domain_util for programs in C, and for all
languages that call C.")
    kx_add_package(c_dev libkx-c-dev
        SECTION libdevel
        DEPENDS c dev
        DESCRIPTION "identifiers of a telecom network for programs in C (development)
The header of libkx_c, and what CMake and pkg-config need to find it.")
endif()
if(KX_BUILD_SQLITE)
    kx_add_package(sqlite kx-sqlite
        SECTION database
        DEPENDS domain_util platform
        DESCRIPTION "identifiers of a telecom network in SQLite
An extension with functions that read identifiers, and with a table that
has a row for each line of a file. Load it by its name, kx_sqlite.")
    install(FILES bindings/sqlite/kx-sqlite.lintian-overrides DESTINATION share/lintian/overrides RENAME kx-sqlite
        COMPONENT sqlite EXCLUDE_FROM_ALL)
endif()
if(KX_BUILD_POSTGRESQL)
    kx_add_package(postgresql postgresql-15-kx-fdn
        SECTION database
        DEPENDS domain_util platform
        NEEDS postgresql-15
        DESCRIPTION "identifiers of a telecom network in PostgreSQL
The extension kx_fdn: functions that read identifiers, for queries,
indexes and partitions.")
endif()
if(KX_BUILD_PYTHON)
    kx_add_package(python python3-kx-domain-util
        SECTION python
        DEPENDS domain_util platform
        NEEDS "python3 (>= 3.11)" "python3 (<< 3.12)" python3-numpy
        DESCRIPTION "identifiers of a telecom network in Python
The module kx_domain_util reads identifiers as dictionaries, and millions
of them as columns of numpy.")
endif()
include(CPack)

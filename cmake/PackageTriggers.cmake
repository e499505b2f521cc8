# Run by cpack after it made the packages. CPack lets the packages of libraries call ldconfig in their scripts; Debian's
# way is a trigger, which runs it once for all packages.
foreach(package IN LISTS CPACK_PACKAGE_FILES)
    set(tree ${package}.tree)
    execute_process(COMMAND dpkg-deb --raw-extract ${package} ${tree} COMMAND_ERROR_IS_FATAL ANY)
    if(EXISTS ${tree}/DEBIAN/postinst)
        file(REMOVE ${tree}/DEBIAN/postinst ${tree}/DEBIAN/postrm)
        if(EXISTS ${tree}/DEBIAN/shlibs)
            file(WRITE ${tree}/DEBIAN/triggers "activate-noawait ldconfig\n")
        endif()
        execute_process(COMMAND dpkg-deb --root-owner-group --build ${tree} ${package}
            OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
    endif()
    file(REMOVE_RECURSE ${tree})
endforeach()

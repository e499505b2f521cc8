# C, for programs that are compiled as C. Its compiler is of the same make as that of C++: CMake names precompiled
# headers by the compiler that was looked for last.
if(NOT CMAKE_C_COMPILER)
    get_filename_component(KX_COMPILER_FOLDER ${CMAKE_CXX_COMPILER} DIRECTORY)
    get_filename_component(KX_C_COMPILER ${CMAKE_CXX_COMPILER} NAME)
    string(REPLACE "clang++" "clang" KX_C_COMPILER ${KX_C_COMPILER})
    string(REPLACE "g++" "gcc" KX_C_COMPILER ${KX_C_COMPILER})
    string(REPLACE "c++" "cc" KX_C_COMPILER ${KX_C_COMPILER})
    if(EXISTS ${KX_COMPILER_FOLDER}/${KX_C_COMPILER})
        set(CMAKE_C_COMPILER ${KX_COMPILER_FOLDER}/${KX_C_COMPILER})
    endif()
endif()
enable_language(C)

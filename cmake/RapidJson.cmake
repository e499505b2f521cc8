# RapidJSON, a library of headers.
include_guard(GLOBAL)
find_package(RapidJSON REQUIRED)
add_library(kx_rapidjson INTERFACE)
target_include_directories(kx_rapidjson SYSTEM INTERFACE ${RAPIDJSON_INCLUDE_DIRS})
target_compile_options(kx_rapidjson
    INTERFACE $<$<CXX_COMPILER_ID:Clang>:-include${CMAKE_CURRENT_LIST_DIR}/rapidjsonstack.h>)

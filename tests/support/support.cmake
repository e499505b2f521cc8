# The headers that tests, benchmarks and fuzzers share, as the target kx_test_support. Three of them are generated here,
# so that no new record or kind is forgotten.
include_guard(GLOBAL)

# ---- recordlists.h: the fields of every record of domainindex.h, in their order, as `RecordFields` has them ----------

set(header ${PROJECT_SOURCE_DIR}/include/kx_domain_util/domainindex.h)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${header})

file(STRINGS ${header} lines REGEX "^(namespace|struct|    [A-Za-z0-9_:]+ [A-Za-z0-9]+( = [^;]*)?;)")
set(lists "namespace NS_TEST {\n")
foreach(line IN LISTS lines)
    if(line MATCHES "^namespace ([A-Z_]+)")
        set(scope ${CMAKE_MATCH_1})
    elseif(line MATCHES "^struct ([A-Za-z_]+)( : ([A-Za-z_]+))?")
        set(record ${CMAKE_MATCH_1})
        list(APPEND records ${scope}::${record})
        set(fields_of_${record} ${fields_of_${CMAKE_MATCH_3}})
    elseif(line MATCHES "^    [A-Za-z0-9_:]+ ([A-Za-z0-9]+)")
        list(APPEND fields_of_${record} ${CMAKE_MATCH_1})
    endif()
endforeach()

foreach(record IN LISTS records)
    string(REGEX REPLACE ".*::" "" name ${record})
    list(TRANSFORM fields_of_${name} REPLACE "(.+)" "Field{\"\\1\", &Record::\\1}" OUTPUT_VARIABLE fields)
    list(JOIN fields ", " fields)
    string(APPEND lists "
template <>
struct RecordFields<${record}> {
    using Record = ${record};
    static constexpr std::string_view NAME{\"${name}\"};
    static constexpr std::tuple LIST{${fields}};
};
")
endforeach()
string(APPEND lists "\n}  // namespace NS_TEST\n")
file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/generated/support/recordlists.h CONTENT "${lists}" @ONLY)

# ---- conversionlists.h: every `Conversion` of fdn.h, and which functions it has of its own ---------------------------

set(header ${PROJECT_SOURCE_DIR}/include/kx_domain_util/fdn.h)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${header})

file(STRINGS ${header} lines REGEX "^struct KX_DOMAIN_UTIL_API Conversion<|^    static (bool Read|void Write)\\(")
set(kinds "")
foreach(line IN LISTS lines)
    if(line MATCHES "Conversion<([A-Za-z_:]+)>")
        set(kind ${CMAKE_MATCH_1})
        list(APPEND kinds ${kind})
        set(own_of_${kind} "false" "false")
    elseif(line MATCHES "Read")
        list(REMOVE_AT own_of_${kind} 0)
        list(PREPEND own_of_${kind} "true")
    else()
        list(REMOVE_AT own_of_${kind} 1)
        list(APPEND own_of_${kind} "true")
    endif()
endforeach()

set(visits "")
foreach(kind IN LISTS kinds)
    string(REGEX REPLACE "^([^:]+)$" "NS_UTIL::NS_FDN::\\1" name ${kind})
    list(JOIN own_of_${kind} ", " own)
    string(APPEND visits "    visit.template operator()<${name}, ${own}>(\"${name}\");\n")
endforeach()
file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/generated/support/conversionlists.h CONTENT "namespace NS_TEST {

/// Calls `visit<Kind, hasRead, hasWrite>(name)` for each conversion, `name` being that of the kind with its namespace.
template <class Visit>
void ForEachConversion(Visit visit) {
${visits}}

}  // namespace NS_TEST
" @ONLY)

# ---- examplelist.h: the examples of the catalogue's kinds, for tests of the library alone ----------------------------

set(header ${PROJECT_BINARY_DIR}/generated/support/examplelist.h)
add_executable(kx_list_examples ${PROJECT_SOURCE_DIR}/tests/support/listexamples.cpp)
target_link_libraries(kx_list_examples PRIVATE kx_catalogue kx_warnings)
add_custom_command(OUTPUT ${header}
    COMMAND kx_list_examples ${header}.new
    COMMAND ${CMAKE_COMMAND} -E copy_if_different ${header}.new ${header}  # else every test is compiled again
    VERBATIM)
add_custom_target(kx_example_list DEPENDS ${header})

# ---- The target ------------------------------------------------------------------------------------------------------

add_library(kx_test_support INTERFACE)
target_include_directories(kx_test_support INTERFACE
    ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/tests ${PROJECT_BINARY_DIR}/generated)
add_dependencies(kx_test_support kx_example_list)

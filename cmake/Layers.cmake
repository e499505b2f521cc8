# The layers between the library and whoever shows identifiers to the world: static libraries, linked into the tool, the
# bindings, tests, benchmarks and fuzzers. Each names its headers by folder: "catalogue/kinds.h".
find_package(PkgConfig REQUIRED)
find_package(simdjson REQUIRED)
find_package(TBB REQUIRED)
pkg_check_modules(zlib REQUIRED IMPORTED_TARGET zlib)
pkg_check_modules(zstd REQUIRED IMPORTED_TARGET libzstd)
pkg_check_modules(lzma REQUIRED IMPORTED_TARGET liblzma)

# kx_add_layer(NAME SOURCES file... LIBRARIES target...): the layer in the folder NAME.
function(kx_add_layer name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES")
    list(TRANSFORM arg_SOURCES PREPEND ${name}/)
    add_library(kx_${name} STATIC ${arg_SOURCES})
    target_include_directories(kx_${name} PUBLIC ${PROJECT_SOURCE_DIR})
    target_link_libraries(kx_${name} PUBLIC ${arg_LIBRARIES} PRIVATE kx_warnings)
endfunction()

kx_add_layer(text
    SOURCES
        displaytext.cpp
        line.cpp
        quoting.cpp
        utf8.cpp)
target_link_libraries(kx_text PRIVATE simdjson::simdjson)

kx_add_layer(catalogue
    SOURCES
        assumed.cpp
        conversion.cpp
        equipment.cpp
        explanation.cpp
        fieldvalues.cpp
        kinds.cpp
        levelcheck.cpp
        oam.cpp
        pieces.cpp
        ports.cpp
        readport.cpp
        record.cpp
        services.cpp
        statistics.cpp
        tables.cpp
        tagorder.cpp
        vocabulary.cpp
        writingcheck.cpp
    LIBRARIES kx_text kx::domain_util)

kx_add_layer(formats
    SOURCES
        columnformat.cpp
        columns.cpp
        csv.cpp
        explanationdrawing.cpp
        json.cpp
        jsonmember.cpp
        plainvalue.cpp
        recordformat.cpp
        recordline.cpp
        recordreader.cpp
        recordrow.cpp
        tablecell.cpp
        texttable.cpp
        tsv.cpp
    LIBRARIES kx_catalogue)
target_link_libraries(kx_formats PRIVATE simdjson::simdjson)

kx_add_layer(lines
    SOURCES
        appendedfile.cpp
        blockconversion.cpp
        blockreader.cpp
        compression.cpp
        descriptor.cpp
        failure.cpp
        fileinuse.cpp
        findingwriter.cpp
        input.cpp
        interruptions.cpp
        lineresult.cpp
        linerun.cpp
        otherfile.cpp
        output.cpp
        outputconflicts.cpp
        progress.cpp
        repetitions.cpp
        temporaryfile.cpp
        terminal.cpp
    LIBRARIES kx_text TBB::tbb PkgConfig::zlib PkgConfig::zstd PkgConfig::lzma Threads::Threads)

if(KX_BUILD_STANDALONE)
    kx_add_layer(sample
        SOURCES
            sampleidentifiers.cpp
            sampleinventoryservice.cpp
            samplenetwork.cpp
            samplenetypes.cpp
            sampleservices.cpp
        LIBRARIES kx_catalogue kx::standalone)
endif()

# stillgate_library(<name> SOURCES <file>... [USES <target>...])
#
# One folder of the application as a static library. Headers are included from the folder Stillgate/
# ("Models/BlockRules.h"), so that an include names its layer; scripts/check-layers compares them with the
# list of what a layer may use.
function(stillgate_library name)
    cmake_parse_arguments(ARG "" "" "SOURCES;USES" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    target_include_directories(${name} PUBLIC "${CMAKE_SOURCE_DIR}/Stillgate")
    target_link_libraries(${name} PUBLIC ${ARG_USES} PRIVATE stillgate_warnings)
endfunction()

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

# stillgate_qml_module(<name> URI <uri> [SOURCES <file>...] [QML <file>...] [USES <target>...] [DEPENDENCIES <uri>...])
#
# A folder that is also a QML module; DEPENDENCIES are the modules whose types its C++ types use. Link <name> and
# <name>plugin into a program that imports it.
function(stillgate_qml_module name)
    cmake_parse_arguments(ARG "" "URI" "SOURCES;QML;USES;DEPENDENCIES" ${ARGN})
    set(cache_option "")
    if(NOT STILLGATE_QML_CACHE)
        set(cache_option NO_CACHEGEN)
    endif()
    set(CMAKE_AUTOMOC ON)
    # qrc:/qt/qml is where the application looks; without the prefix a compiled singleton can't be resolved.
    qt_add_qml_module(${name} STATIC URI ${ARG_URI} VERSION 1.0 RESOURCE_PREFIX /qt/qml ${cache_option}
        DEPENDENCIES ${ARG_DEPENDENCIES} QML_FILES ${ARG_QML} SOURCES ${ARG_SOURCES})
    # What is generated is small, and its includes aren't. Our own files have options of their own and stay apart.
    set_target_properties(${name} PROPERTIES
        QT_QMLCACHEGEN_ARGUMENTS --only-bytecode UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 0)
    target_include_directories(${name}
        PUBLIC "${CMAKE_SOURCE_DIR}/Stillgate" PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}")
    target_link_libraries(${name} PUBLIC ${ARG_USES} Qt6::Qml)
    # On our own files alone: what Qt's tools generate shadows names.
    get_target_property(warnings stillgate_warnings INTERFACE_COMPILE_OPTIONS)
    set_source_files_properties(${ARG_SOURCES} PROPERTIES COMPILE_OPTIONS "${warnings}")
endfunction()

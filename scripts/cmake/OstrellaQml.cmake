# How a folder of QML becomes a module that is linked in: compiled ahead of time, no plugins, nothing
# to be found at run time.

set(OSTRELLA_QML_DIRECTORY "${CMAKE_BINARY_DIR}/qml")
set(OSTRELLA_QML_TEMPLATE "${CMAKE_CURRENT_LIST_DIR}/QmlModule.cpp.in")

# ostrella_qml_module(NAME URI Ostrella.Something QML ... [SOURCES ...] LINK ...)
# A static library of one folder. Files of a module import it by name, also from within. Whoever
# loads QML calls `ostrella::use<Something>Module()` first, so that the linker keeps it; engines
# import from ":/qt/qml".
function(ostrella_qml_module name)
    cmake_parse_arguments(arg "" "URI" "QML;SOURCES;LINK" ${ARGN})
    string(REGEX REPLACE "^.*\\." "" OSTRELLA_MODULE "${arg_URI}")
    string(REPLACE "." "_" OSTRELLA_MODULE_URI "${arg_URI}")
    string(REGEX REPLACE "[^A-Za-z0-9]" "_" OSTRELLA_MODULE_TARGET "${name}")
    set(entry "${CMAKE_CURRENT_BINARY_DIR}/use${OSTRELLA_MODULE}Module.cpp")
    configure_file("${OSTRELLA_QML_TEMPLATE}" "${entry}" @ONLY)

    # Before the module is added: its types are read from what moc writes.
    set(CMAKE_AUTOMOC ON)
    add_library(${name} STATIC ${arg_SOURCES} "${entry}")
    target_include_directories(${name} PUBLIC "${PROJECT_SOURCE_DIR}/src"
        PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}")
    target_link_libraries(${name} PUBLIC ${arg_LINK} Qt6::Quick)
    target_compile_options(${name} PRIVATE -ffp-contract=off)
    target_compile_definitions(${name} PUBLIC QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII)
    string(REPLACE "." "/" path "${arg_URI}")
    qt_add_qml_module(${name} URI ${arg_URI} VERSION 1.0 NO_PLUGIN
        RESOURCE_PREFIX /qt/qml
        OUTPUT_DIRECTORY "${OSTRELLA_QML_DIRECTORY}/${path}"
        IMPORT_PATH "${OSTRELLA_QML_DIRECTORY}"
        QML_FILES ${arg_QML})

    # The house's warnings are for what people write.
    get_target_property(sources ${name} SOURCES)
    list(FILTER sources INCLUDE REGEX "/\\.rcc/qmlcache/|_qmltyperegistrations\\.cpp$")
    set_source_files_properties(${sources} PROPERTIES COMPILE_OPTIONS "-w")
endfunction()

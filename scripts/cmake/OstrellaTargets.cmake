# How libraries, tests and benchmarks are declared, so that each folder's list stays one line a target.

# ostrella_library(NAME [QT] SOURCES ... LINK ...)
# A static library of one folder. Includes are written from src/: "Models/TriangleMesh.h".
function(ostrella_library name)
    cmake_parse_arguments(arg "QT" "" "SOURCES;LINK" ${ARGN})
    add_library(${name} STATIC ${arg_SOURCES})
    target_include_directories(${name} PUBLIC "${PROJECT_SOURCE_DIR}/src")
    target_link_libraries(${name} PUBLIC ${arg_LINK})
    # One multiply and one add stay two operations, on every compiler and processor.
    target_compile_options(${name} PRIVATE -ffp-contract=off)
    if(arg_QT)
        set_target_properties(${name} PROPERTIES AUTOMOC ON)
        target_compile_definitions(${name} PUBLIC QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII)
    endif()
endfunction()

# ostrella_test(NAME LABEL unit [TIMEOUT seconds] [SOURCES ...] LINK ...)
# A GoogleTest program of all *Test.cpp of the calling folder, so that no test file can be forgotten.
# Extra SOURCES are helpers. The program runs with a Qt core application on its main thread.
function(ostrella_test name)
    cmake_parse_arguments(arg "" "LABEL;TIMEOUT" "SOURCES;LINK;DEPENDS" ${ARGN})
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 120)
    endif()
    file(GLOB tests CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*Test.cpp")
    add_executable(${name} ${tests} ${arg_SOURCES})
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
    target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/src" "${PROJECT_SOURCE_DIR}/tests")
    target_compile_options(${name} PRIVATE -ffp-contract=off)
    target_compile_definitions(${name} PRIVATE
        OSTRELLA_TEST_DATA="${PROJECT_SOURCE_DIR}/tests/data"
        OSTRELLA_RECORDED_RUNS="${OSTRELLA_RECORDED_RUNS}"
        OSTRELLA_SOURCE_DIR="${PROJECT_SOURCE_DIR}"
        OSTRELLA_STAGE_DIR="${OSTRELLA_STAGE}")
    target_link_libraries(${name} PRIVATE ${arg_LINK} ostrella-test-support)
    if(arg_DEPENDS)
        add_dependencies(${name} ${arg_DEPENDS})
    endif()
    gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST NO_PRETTY_VALUES
        PROPERTIES LABELS "${arg_LABEL}" TIMEOUT ${arg_TIMEOUT})
endfunction()

# ostrella_ui_test(NAME [VARIANTS "name=ENVIRONMENT" ...] [TIMEOUT seconds] [MAIN file] [SOURCES ...]
#     LINK ...)
# A GoogleTest program of all *Test.cpp of the calling folder that shows windows. All its tests run in
# one process on a display server of their own, with tests/support/UITestMain.cpp around them; once
# plainly, and once more for each variant with that variable of the environment set. MAIN is a main()
# of the test's own in the place of UITestMain.cpp.
function(ostrella_ui_test name)
    cmake_parse_arguments(arg "" "TIMEOUT;MAIN" "VARIANTS;SOURCES;LINK;DEPENDS" ${ARGN})
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 300)
    endif()
    if(NOT arg_MAIN)
        set(arg_MAIN "${PROJECT_SOURCE_DIR}/tests/support/UITestMain.cpp")
    endif()
    file(GLOB tests CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*Test.cpp")
    add_executable(${name} ${tests} ${arg_SOURCES}
        "${PROJECT_SOURCE_DIR}/tests/support/LoadedDrivers.cpp"
        "${arg_MAIN}")
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
    target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/src" "${PROJECT_SOURCE_DIR}/tests")
    target_compile_options(${name} PRIVATE -ffp-contract=off)
    target_compile_definitions(${name} PRIVATE
        OSTRELLA_TEST_DATA="${PROJECT_SOURCE_DIR}/tests/data"
        OSTRELLA_STAGE_DIR="${OSTRELLA_STAGE}")
    target_link_libraries(${name} PRIVATE ${arg_LINK} ostrella-test-support)
    if(arg_DEPENDS)
        add_dependencies(${name} ${arg_DEPENDS})
    endif()
    set(launcher)
    if(UNIX AND NOT APPLE)
        find_program(OSTRELLA_XVFB_RUN xvfb-run REQUIRED)
        set(launcher "${OSTRELLA_XVFB_RUN}" -a -s "-screen 0 1400x900x24")
    endif()
    foreach(variant IN ITEMS "plain=" LISTS arg_VARIANTS)
        string(REGEX MATCH "^([^=]*)=(.*)$" whole "${variant}")
        set(test ${name})
        set(environment "LIBGL_ALWAYS_SOFTWARE=1;QT_RHI_LEAK_CHECK=1;QT_HASH_SEED=0")
        if(CMAKE_MATCH_2)
            set(test ${name}.${CMAKE_MATCH_1})
            list(APPEND environment "${CMAKE_MATCH_2}")
        endif()
        if(UNIX AND NOT APPLE)
            list(APPEND environment "QT_QPA_PLATFORM=xcb")
        endif()
        add_test(NAME ${test} COMMAND ${launcher} $<TARGET_FILE:${name}>)
        set_tests_properties(${test} PROPERTIES LABELS ui TIMEOUT ${arg_TIMEOUT}
            ENVIRONMENT "${environment}" FAIL_REGULAR_EXPRESSION "unreleased resources")
    endforeach()
endfunction()

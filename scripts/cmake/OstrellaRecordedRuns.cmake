# Recorded runs of the real solver, one archive a case in tests/data/runs, unpacked into the build tree
# whenever an archive is newer than what lies there. OSTRELLA_RECORDED_RUNS names the folder.
set(OSTRELLA_RECORDED_RUNS "${CMAKE_BINARY_DIR}/recorded-runs" CACHE INTERNAL "")
file(GLOB archives CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/tests/data/runs/*.tar.xz")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${archives})
foreach(archive IN LISTS archives)
    string(REGEX REPLACE "^.*/(.*)\\.tar\\.xz$" "\\1" case "${archive}")
    set(stamp "${OSTRELLA_RECORDED_RUNS}/${case}.unpacked")
    if("${archive}" IS_NEWER_THAN "${stamp}")
        file(REMOVE_RECURSE "${OSTRELLA_RECORDED_RUNS}/${case}")
        file(ARCHIVE_EXTRACT INPUT "${archive}" DESTINATION "${OSTRELLA_RECORDED_RUNS}")
        file(TOUCH "${stamp}")
    endif()
endforeach()

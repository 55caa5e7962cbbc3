# The application's package in the build tree, laid out as after installation.
set(OSTRELLA_STAGE "${CMAKE_BINARY_DIR}/stage" CACHE INTERNAL "")
set(OSTRELLA_STAGE_BIN "${OSTRELLA_STAGE}/bin" CACHE INTERNAL "")
set(OSTRELLA_STAGE_TOOLS "${OSTRELLA_STAGE}/libexec/ostrella" CACHE INTERNAL "")
set(OSTRELLA_STAGE_SHARE "${OSTRELLA_STAGE}/share/ostrella" CACHE INTERNAL "")
file(MAKE_DIRECTORY "${OSTRELLA_STAGE_BIN}" "${OSTRELLA_STAGE_TOOLS}" "${OSTRELLA_STAGE_SHARE}")

# ostrella_stage_tools()
# Stages gmsh and SU2_CFD into the tools directory: each a link to the program named in OSTRELLA_GMSH or
# OSTRELLA_SU2_CFD, else to the one on the search path. Where there is no SU2_CFD its name is a link to
# the preview solver. The release of a real solver is recorded beside the templates.
function(ostrella_stage_tools)
    find_program(OSTRELLA_FOUND_GMSH gmsh)
    find_program(OSTRELLA_FOUND_SU2_CFD SU2_CFD)
    set(gmsh "${OSTRELLA_GMSH}")
    if(NOT gmsh AND OSTRELLA_FOUND_GMSH)
        set(gmsh "${OSTRELLA_FOUND_GMSH}")
    endif()
    if(NOT gmsh)
        message(FATAL_ERROR "gmsh is missing: install it, or name it with -DOSTRELLA_GMSH=PATH.")
    endif()
    set(solver "${OSTRELLA_SU2_CFD}")
    if(NOT solver AND OSTRELLA_FOUND_SU2_CFD)
        set(solver "${OSTRELLA_FOUND_SU2_CFD}")
    endif()
    foreach(program "${gmsh}" "${solver}")
        if(program AND NOT EXISTS "${program}")
            message(FATAL_ERROR "There is no program at ${program}.")
        endif()
    endforeach()

    set(release "${OSTRELLA_STAGE_SHARE}/su2/release.txt")
    file(MAKE_DIRECTORY "${OSTRELLA_STAGE_SHARE}/su2")
    file(REMOVE "${OSTRELLA_STAGE_TOOLS}/gmsh" "${OSTRELLA_STAGE_TOOLS}/SU2_CFD" "${release}")
    file(CREATE_LINK "${gmsh}" "${OSTRELLA_STAGE_TOOLS}/gmsh" SYMBOLIC)
    if(solver)
        file(CREATE_LINK "${solver}" "${OSTRELLA_STAGE_TOOLS}/SU2_CFD" SYMBOLIC)
        # The solver tells its release in the banner of its help.
        execute_process(COMMAND "${solver}" --help WORKING_DIRECTORY "${CMAKE_BINARY_DIR}"
            OUTPUT_VARIABLE banner ERROR_VARIABLE banner TIMEOUT 20 RESULT_VARIABLE ignored)
        if(banner MATCHES "([0-9]+\\.[0-9]+\\.[0-9]+)")
            file(WRITE "${release}" "${CMAKE_MATCH_1}\n")
        endif()
    else()
        file(CREATE_LINK "ostrella-preview-solver" "${OSTRELLA_STAGE_TOOLS}/SU2_CFD" SYMBOLIC)
    endif()
endfunction()

# ostrella_stage_information()
# Stages what the package says of itself: the project's version and where updates come from. What is
# not set is left out.
function(ostrella_stage_information)
    set(information "{}")
    foreach(entry
        "CFBundleShortVersionString=${PROJECT_VERSION}"
        "CFBundleVersion=${OSTRELLA_BUILD}"
        "SUFeedURL=${OSTRELLA_UPDATE_FEED}"
        "SUPublicEDKey=${OSTRELLA_UPDATE_KEY}")
        string(REGEX MATCH "^([^=]*)=(.*)$" whole "${entry}")
        set(key "${CMAKE_MATCH_1}")
        string(REGEX REPLACE "([\\\"])" "\\\\\\1" value "${CMAKE_MATCH_2}")
        if(NOT value STREQUAL "")
            string(JSON information SET "${information}" "${key}" "\"${value}\"")
        endif()
    endforeach()
    # Who configures a feed of files means it.
    if(OSTRELLA_UPDATE_FEED MATCHES "^file:")
        string(JSON information SET "${information}" OstrellaAllowsFileFeed true)
    endif()
    file(GENERATE OUTPUT "${OSTRELLA_STAGE_SHARE}/Info.json" CONTENT "${information}\n")
endfunction()

# The shared directory, in the build tree and where it is installed: the resources of the project, and as "PROJ"
# the database and grids of the installed PROJ. A link keeps these in step with the PROJ library when that is
# updated; a copy makes a tree that needs no PROJ data elsewhere.

find_path(TQ_PROJ_DATA_DIRECTORY proj.db
    HINTS "${PROJ_DIR}/../../.." "${PROJ_DIR}/../../../.."
    PATH_SUFFIXES share/proj
    DOC "The directory of PROJ's database"
    REQUIRED)

set(tq_built_shared_directory "${PROJECT_BINARY_DIR}/${TQ_SHARED_DIRECTORY}")
if(IS_SYMLINK "${tq_built_shared_directory}")
    file(REMOVE "${tq_built_shared_directory}")
endif()
file(MAKE_DIRECTORY "${tq_built_shared_directory}")

if(WIN32) # where links are a privilege
    file(COPY "${PROJECT_SOURCE_DIR}/resources/" DESTINATION "${tq_built_shared_directory}")
else()
    file(GLOB tq_resources CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/resources/*")
    list(FILTER tq_resources EXCLUDE REGEX "README.md$")
    foreach(resource IN LISTS tq_resources)
        cmake_path(GET resource FILENAME name)
        file(CREATE_LINK "${resource}" "${tq_built_shared_directory}/${name}" SYMBOLIC)
    endforeach()
endif()
if(TQ_COPY_PROJ_DATA)
    file(COPY "${TQ_PROJ_DATA_DIRECTORY}/" DESTINATION "${tq_built_shared_directory}/PROJ")
else()
    file(CREATE_LINK "${TQ_PROJ_DATA_DIRECTORY}" "${tq_built_shared_directory}/PROJ" SYMBOLIC)
endif()

install(DIRECTORY "${PROJECT_SOURCE_DIR}/resources/" DESTINATION "${TQ_SHARED_DIRECTORY}"
    PATTERN README.md EXCLUDE)
install(DIRECTORY "${tq_built_shared_directory}/PROJ" DESTINATION "${TQ_SHARED_DIRECTORY}")

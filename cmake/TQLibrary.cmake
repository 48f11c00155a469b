# tq_add_library(<name>)
#   A shared library of the project: hidden symbols, a versioned soname, its export macro header
#   generated as <name>Export.h, and headers that include each other by their path from the root.
#
# tq_add_classes(<library> <class>...)
#   Adds the pairs <class>.h / <class>.cpp of the current folder to a library; <class>.h alone where
#   there is no source. The headers are installed under the folder's name and must compile alone.

function(tq_add_library name)
    add_library(${name} SHARED)
    add_library(TQProj::${name} ALIAS ${name})
    set_target_properties(${name} PROPERTIES
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR})
    generate_export_header(${name}
        EXPORT_FILE_NAME "${PROJECT_BINARY_DIR}/include/${name}Export.h")
    target_sources(${name} PUBLIC FILE_SET HEADERS BASE_DIRS "${PROJECT_SOURCE_DIR}")
    target_sources(${name} PUBLIC FILE_SET generated TYPE HEADERS BASE_DIRS "${PROJECT_BINARY_DIR}/include"
        FILES "${PROJECT_BINARY_DIR}/include/${name}Export.h")
    target_link_libraries(${name} PRIVATE $<BUILD_INTERFACE:tq_compiler_settings>)
    target_compile_features(${name} PUBLIC cxx_std_20)
endfunction()

function(tq_add_classes library)
    foreach(class IN LISTS ARGN)
        set(source "${CMAKE_CURRENT_SOURCE_DIR}/${class}.cpp")
        if(EXISTS "${source}")
            target_sources(${library} PRIVATE "${source}")
        endif()
        target_sources(${library} PUBLIC FILE_SET HEADERS FILES "${CMAKE_CURRENT_SOURCE_DIR}/${class}.h")
    endforeach()
endfunction()

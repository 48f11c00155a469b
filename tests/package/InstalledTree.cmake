# Installs the build tree into a fresh prefix, compiles the README's C++ example against it, once through
# find_package and once through pkg-config, and runs it.
cmake_minimum_required(VERSION 3.25)

set(work "${BUILD_DIRECTORY}/tests/installed-tree")
set(prefix "${work}/prefix")
file(REMOVE_RECURSE "${work}")
file(MAKE_DIRECTORY "${work}/consumer")

function(run)
    execute_process(COMMAND ${ARGN} WORKING_DIRECTORY "${work}/consumer"
        RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "${ARGN}\nfailed (${result}):\n${output}")
    endif()
    set(output "${output}" PARENT_SCOPE)
endfunction()

function(expect_point program)
    run("${CMAKE_COMMAND}" -E env "LD_LIBRARY_PATH=${prefix}/${LIBDIR}" "${program}")
    # Paris in UTM zone 31N, by PROJ 9.1 (cs2cs -f %.3f EPSG:4326 EPSG:32631): 452482.533 5411717.177
    if(NOT output MATCHES "^452482\\.533 5411717\\.177\n$")
        message(FATAL_ERROR "${program} printed: ${output}")
    endif()
endfunction()

run("${CMAKE_COMMAND}" --install "${BUILD_DIRECTORY}" --prefix "${prefix}")

if(READELF)
    run("${SOURCE_DIRECTORY}/tests/package/runpaths.sh" "${prefix}/bin" "${prefix}/${LIBDIR}")
endif()

# The installed command finds PROJ's data, the families and the texts beside itself.
foreach(file IN ITEMS PROJ/proj.db TQN_ProjAreas.txt localization/fr/projMessages.strings)
    if(NOT EXISTS "${prefix}/share/tqproj/${file}")
        message(FATAL_ERROR "share/tqproj/${file} is not installed")
    endif()
endforeach()
run("${CMAKE_COMMAND}" -E env LC_ALL=C PROJ_DATA=${work} PROJ_LIB=${work}
    "${prefix}/bin/tqproj" catalog --family France --search EPSG:2154)
if(NOT output MATCHES "^EPSG:2154\tRGF93 v1 / Lambert-93")
    message(FATAL_ERROR "the installed command listed: ${output}")
endif()

file(READ "${SOURCE_DIRECTORY}/README.md" readme)
if(NOT readme MATCHES "```cpp\n([^`]*)```")
    message(FATAL_ERROR "README.md holds no C++ example")
endif()
file(WRITE "${work}/consumer/main.cpp" "${CMAKE_MATCH_1}")
file(WRITE "${work}/consumer/CMakeLists.txt" [[
cmake_minimum_required(VERSION 3.25)
project(consumer LANGUAGES CXX)
find_package(TQProj REQUIRED)
add_executable(consumer main.cpp)
target_link_libraries(consumer PRIVATE TQProj::TQProjection)
]])
run("${CMAKE_COMMAND}" -S . -B build -G Ninja "-DCMAKE_PREFIX_PATH=${prefix}" "-DCMAKE_CXX_COMPILER=${CXX_COMPILER}")
run("${CMAKE_COMMAND}" --build build)
expect_point("${work}/consumer/build/consumer")

find_program(pkg_config pkg-config REQUIRED)
run("${CMAKE_COMMAND}" -E env "PKG_CONFIG_PATH=${prefix}/${LIBDIR}/pkgconfig"
    "${pkg_config}" --cflags --libs tqprojection)
separate_arguments(flags UNIX_COMMAND "${output}")
run("${CXX_COMPILER}" -std=c++20 main.cpp -o by-pkg-config ${flags})
expect_point("${work}/consumer/by-pkg-config")

# What every target of the project is compiled with.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_VERIFY_INTERFACE_HEADER_SETS ON)

add_library(tq_compiler_settings INTERFACE)
if(MSVC)
    target_compile_options(tq_compiler_settings INTERFACE /W4 /permissive- /utf-8 /fp:precise)
    if(TQ_WARNINGS_AS_ERRORS)
        target_compile_options(tq_compiler_settings INTERFACE /WX)
    endif()
else()
    # No fused multiply-add: the same digits on every platform and processor.
    target_compile_options(tq_compiler_settings INTERFACE
        -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Woverloaded-virtual -ffp-contract=off)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        # Calls inside a library are direct, as they are on Windows.
        target_compile_options(tq_compiler_settings INTERFACE -fno-semantic-interposition)
        if(NOT CMAKE_CXX_CLANG_TIDY) # which does not know the option
            # A library with symbols that are unique in the process could not be unloaded.
            target_compile_options(tq_compiler_settings INTERFACE -fno-gnu-unique)
        endif()
    endif()
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
        # GCC bug 105651: false alarms about the memory of std::string. clang-tidy reads the same options.
        target_compile_options(tq_compiler_settings INTERFACE
            -Wno-unknown-warning-option -Wno-restrict -Wno-array-bounds -Wno-stringop-overflow)
    endif()
    if(TQ_WARNINGS_AS_ERRORS)
        target_compile_options(tq_compiler_settings INTERFACE -Werror)
    endif()
    if(TQ_SANITIZERS)
        target_compile_options(tq_compiler_settings INTERFACE
            -fsanitize=${TQ_SANITIZERS} -fno-sanitize-recover=all -fno-omit-frame-pointer)
        target_link_options(tq_compiler_settings INTERFACE -fsanitize=${TQ_SANITIZERS})
    endif()
    if(TQ_COVERAGE)
        target_compile_options(tq_compiler_settings INTERFACE --coverage -O0)
        target_link_options(tq_compiler_settings INTERFACE --coverage)
    endif()
endif()

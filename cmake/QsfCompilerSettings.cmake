# Compiler settings shared by every target of the project.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_C_STANDARD_REQUIRED ON)
set(CMAKE_C_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_C_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

if(NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE Release CACHE STRING "Build type" FORCE)
endif()
set(CMAKE_CXX_FLAGS_RELEASE "-O3 -DNDEBUG")

add_library(qsf_compile_settings INTERFACE)
target_compile_options(qsf_compile_settings INTERFACE
    -Wall -Wextra -Wshadow -Wpedantic
    $<$<COMPILE_LANGUAGE:CXX>:-Wconversion>
    # The stated order of floating-point operations is what gives the stated bits.
    -ffp-contract=off)
target_compile_definitions(qsf_compile_settings INTERFACE
    _FILE_OFFSET_BITS=64 BOOST_BIND_GLOBAL_PLACEHOLDERS BOOST_ALLOW_DEPRECATED_HEADERS)
# A newer compiler's new warnings stop nobody who only wants to build.
if(QSF2SQL_WARNINGS_AS_ERRORS AND
   ((CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13) OR
    (CMAKE_CXX_COMPILER_ID STREQUAL "Clang" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 15)))
    target_compile_options(qsf_compile_settings INTERFACE -Werror
        # GCC 12 sees overflows that are none in containers of the library that it has inlined.
        $<$<CXX_COMPILER_ID:GNU>:-Wno-error=array-bounds;-Wno-error=restrict;-Wno-error=stringop-overflow>)
endif()

if(QSF2SQL_SANITIZERS)
    list(JOIN QSF2SQL_SANITIZERS "," sanitizer_list)
    add_compile_options(-fsanitize=${sanitizer_list} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${sanitizer_list})
    add_compile_definitions(QSF2SQL_SANITIZED)
endif()
# The thread sanitizer follows an OpenMP team only with the tool library that comes with the compiler.
if("thread" IN_LIST QSF2SQL_SANITIZERS)
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-resource-dir
        OUTPUT_VARIABLE compiler_resources OUTPUT_STRIP_TRAILING_WHITESPACE)
    find_library(QSF2SQL_ARCHER archer HINTS "${compiler_resources}/../.." REQUIRED)
    mark_as_advanced(QSF2SQL_ARCHER)
    set(QSF2SQL_TEST_ENVIRONMENT "OMP_TOOL_LIBRARIES=${QSF2SQL_ARCHER}")
endif()
if(QSF2SQL_FUZZERS)
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()

# qsf_module(NAME SOURCES ... [LINKS ...] [PRIVATE_LINKS ...])
#
# One static library out of one folder under modules/. include/ is what others may include, src/ is private: a module
# sees another one's headers only by linking it, which keeps the floors.
function(qsf_module name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINKS;PRIVATE_LINKS" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    target_include_directories(${name}
        PUBLIC "${CMAKE_CURRENT_SOURCE_DIR}/include"
        PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}/src")
    target_link_libraries(${name} PUBLIC ${ARG_LINKS} PRIVATE ${ARG_PRIVATE_LINKS} qsf_compile_settings)
endfunction()

# qsf_together(TARGET FOLDER ...)
#
# In a quick build the sources of each folder make one piece, so that the compiler meets their headers and templates
# once; sources with options of their own stay alone. Two sources of a folder must not give one name to two things in
# their unnamed namespaces. That each source includes what it uses is seen by every other build.
function(qsf_together target)
    if(NOT QSF2SQL_QUICK_BUILD)
        return()
    endif()
    set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
    get_target_property(sources ${target} SOURCES)
    foreach(source IN LISTS sources)
        get_filename_component(folder "${source}" DIRECTORY)
        if("${folder}" IN_LIST ARGN)
            string(MAKE_C_IDENTIFIER "${folder}" group)
            set_source_files_properties("${source}" PROPERTIES UNITY_GROUP ${group})
        endif()
    endforeach()
endfunction()

# qsf_tests(NAME SOURCES ... LINKS ...)
#
# One GoogleTest program, registered case by case with CTest. It may see the module's private headers.
# TEST_FILES is the folder of its sources.
function(qsf_tests name)
    if(NOT QSF2SQL_TESTS)
        return()
    endif()
    cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_include_directories(${name} PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}/src" "${CMAKE_CURRENT_SOURCE_DIR}/tests")
    target_compile_definitions(${name} PRIVATE TEST_FILES="${CMAKE_CURRENT_SOURCE_DIR}/tests")
    target_link_libraries(${name} PRIVATE ${ARG_LINKS} test-support GTest::gtest_main qsf_compile_settings)
    gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60
        PROPERTIES TIMEOUT 300 ENVIRONMENT "${QSF2SQL_TEST_ENVIRONMENT}")
endfunction()

# qsf_fuzz_target(NAME SOURCE LINKS ...)
#
# With QSF2SQL_FUZZERS a libFuzzer program; otherwise a program that replays the files and folders named on its command
# line, so that targets never rot. The seed corpus in fuzz/corpus/NAME, if there, is replayed as a test.
function(qsf_fuzz_target name source)
    cmake_parse_arguments(ARG "" "" "LINKS" ${ARGN})
    add_executable(${name} ${source})
    target_link_libraries(${name} PRIVATE ${ARG_LINKS} qsf_compile_settings)
    if(QSF2SQL_FUZZERS)
        target_link_options(${name} PRIVATE -fsanitize=fuzzer)
    else()
        target_sources(${name} PRIVATE "${CMAKE_SOURCE_DIR}/fuzz/replay_main.cpp")
        target_link_libraries(${name} PRIVATE Boost::filesystem)
    endif()
    set(corpus "${CMAKE_SOURCE_DIR}/fuzz/corpus/${name}")
    if(QSF2SQL_TESTS AND EXISTS "${corpus}" AND NOT QSF2SQL_FUZZERS)
        add_test(NAME fuzz.replay.${name} COMMAND ${name} "${corpus}")
    endif()
endfunction()

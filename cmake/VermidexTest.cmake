# vermidex_add_test(NAME [SOURCE...] [UI] [PLATFORM PLATFORM] [TIMEOUT SECONDS] [LIBS LIBRARY...])
#
# One test program for one test class. Without a SOURCE its only source is NAME.cpp. It links
# QtTest, vermidex_core and vermidex_test_support; with UI vermidex_ui and vermidex_ui_test_support
# too, and LIBS on top. VERMIDEX_TEST_DATA is the path of tests/data, as a string literal.
function(vermidex_add_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "UI" "PLATFORM;TIMEOUT" "LIBS")
    set(sources ${arg_UNPARSED_ARGUMENTS})
    if(NOT sources)
        set(sources ${name}.cpp)
    endif()
    if(arg_UI)
        set(support vermidex_ui_test_support)
    else()
        set(support vermidex_test_support)
    endif()

    add_executable(${name} ${sources})
    vermidex_set_up_target(${name})
    target_link_libraries(${name} PRIVATE vermidex_test_environment ${support} ${arg_LIBS})
    target_compile_definitions(${name} PRIVATE
        VERMIDEX_TEST_DATA="${PROJECT_SOURCE_DIR}/tests/data"
    )
    if(VERMIDEX_PCH)
        target_precompile_headers(${name} REUSE_FROM ${support})
    endif()

    vermidex_add_program_test(${name}
        PLATFORM ${arg_PLATFORM}
        TIMEOUT ${arg_TIMEOUT}
        COMMAND $<TARGET_FILE:${name}>
    )
endfunction()

# vermidex_add_program_test(NAME COMMAND WORD... [PLATFORM PLATFORM] [TIMEOUT SECONDS])
#
# Any other program as a test. It runs in a folder of its own, made afresh for each run, with its
# own settings, on Qt's platform PLATFORM (offscreen), and for TIMEOUT (120) seconds at most, four
# times as long under the sanitizers. Its label is the folder that adds it, so that `ctest -L db`
# runs the tests of db.
function(vermidex_add_program_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "PLATFORM;TIMEOUT" "COMMAND")
    if(NOT arg_PLATFORM)
        set(arg_PLATFORM offscreen)
    endif()
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 120)
    endif()
    if(VERMIDEX_SANITIZE)
        math(EXPR arg_TIMEOUT "4 * ${arg_TIMEOUT}")
    endif()
    get_filename_component(label "${CMAKE_CURRENT_SOURCE_DIR}" NAME)
    set(folder "${PROJECT_BINARY_DIR}/tests/run/${name}")

    add_test(NAME ${name}
        COMMAND sh "${PROJECT_SOURCE_DIR}/tests/support/in-fresh-folder" "${folder}" ${arg_COMMAND}
    )
    set_tests_properties(${name} PROPERTIES
        ENVIRONMENT "LC_ALL=C.UTF-8;QT_QPA_PLATFORM=${arg_PLATFORM}"
        LABELS "${label}"
        TIMEOUT ${arg_TIMEOUT}
    )
endfunction()

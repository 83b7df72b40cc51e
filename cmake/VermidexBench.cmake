# vermidex_add_bench(NAME [SOURCE...] [UI] [LIBS LIBRARY...])
#
# One benchmark program, of NAME.cpp where no SOURCE is given. It links Google Benchmark without a
# main of its own and vermidex_core, or vermidex_ui with UI.
function(vermidex_add_bench name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "UI" "" "LIBS")
    set(sources ${arg_UNPARSED_ARGUMENTS})
    if(NOT sources)
        set(sources ${name}.cpp)
    endif()
    if(arg_UI)
        set(library vermidex_ui)
    else()
        set(library vermidex_core)
    endif()

    add_executable(${name} ${sources})
    vermidex_set_up_target(${name})
    target_link_libraries(${name} PRIVATE ${library} benchmark::benchmark ${arg_LIBS})
    set_property(GLOBAL APPEND PROPERTY VERMIDEX_BENCHES "$<TARGET_FILE:${name}>")
endfunction()

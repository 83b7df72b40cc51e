# Lets ccache, where it is installed, keep what was compiled, for other clones of the project too:
# paths count as seen from the project's folder.
find_program(VERMIDEX_CCACHE ccache)
if(PROJECT_IS_TOP_LEVEL AND VERMIDEX_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER
        "${CMAKE_COMMAND}" -E env
        "CCACHE_BASEDIR=${PROJECT_SOURCE_DIR}"
        CCACHE_NOHASHDIR=1
        CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_ctime,include_file_mtime
        "${VERMIDEX_CCACHE}"
    )
    if(VERMIDEX_PCH)
        add_compile_options(-fpch-preprocess)
    endif()
endif()

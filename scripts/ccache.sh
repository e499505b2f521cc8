# To be sourced: lets cmake compile through ccache if that is installed.
if command -v ccache >/dev/null; then
    export CMAKE_CXX_COMPILER_LAUNCHER=ccache
    export CCACHE_DEPEND=1  # the compiler lists the headers anyway
    export CCACHE_SLOPPINESS=pch_defines,time_macros  # else it ignores files with precompiled headers
fi

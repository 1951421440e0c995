# Cross-compiles for a 32-bit x86 Linux machine (Debian: g++-i686-linux-gnu). Links programs statically, so that a
# 64-bit machine can run them without 32-bit libraries.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(CMAKE_CXX_COMPILER i686-linux-gnu-g++)
set(CMAKE_EXE_LINKER_FLAGS_INIT -static)

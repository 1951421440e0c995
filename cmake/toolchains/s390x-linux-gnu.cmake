# Cross-compiles for a 64-bit big-endian Linux machine (Debian: g++-s390x-linux-gnu). Links programs statically, so that
# an emulator (Debian: qemu-user) needs nothing else.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR s390x)
set(CMAKE_CXX_COMPILER s390x-linux-gnu-g++)
set(CMAKE_EXE_LINKER_FLAGS_INIT -static)

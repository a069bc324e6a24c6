# The board's processor, an e6500: powerpc64, big-endian. scripts/cross-libs puts the
# libraries into the root; programs run in qemu-user, see the preset ppc64.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR ppc64)

set(triplet powerpc64-linux-gnu)
set(root ${CMAKE_CURRENT_LIST_DIR}/../build/cross/${triplet})
cmake_path(NORMAL_PATH root)

set(CMAKE_C_COMPILER ${triplet}-gcc)
set(CMAKE_CXX_COMPILER ${triplet}-g++)
# Without it, the compiler takes square roots with an instruction that the e6500 has not.
set(CMAKE_C_FLAGS_INIT -mcpu=e6500)
set(CMAKE_CXX_FLAGS_INIT -mcpu=e6500)

set(CMAKE_FIND_ROOT_PATH ${root})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_LIBDIR} ${root}/lib/pkgconfig)

# For the libraries that the libraries need.
set(CMAKE_EXE_LINKER_FLAGS_INIT -Wl,-rpath-link,${root}/lib)
set(CMAKE_SHARED_LINKER_FLAGS_INIT -Wl,-rpath-link,${root}/lib)
set(CMAKE_MODULE_LINKER_FLAGS_INIT -Wl,-rpath-link,${root}/lib)

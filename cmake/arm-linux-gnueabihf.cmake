# The guest of scripts/test-guest, which has the packages of armhf unpacked into the root.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR armv7l)

set(triplet arm-linux-gnueabihf)
set(root ${CMAKE_CURRENT_LIST_DIR}/../build/guest/root)
cmake_path(NORMAL_PATH root)

set(CMAKE_C_COMPILER ${triplet}-gcc)
set(CMAKE_CXX_COMPILER ${triplet}-g++)
set(CMAKE_LIBRARY_ARCHITECTURE ${triplet})

set(CMAKE_FIND_ROOT_PATH ${root})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_SYSROOT_DIR} ${root})
set(ENV{PKG_CONFIG_LIBDIR} ${root}/usr/lib/${triplet}/pkgconfig:${root}/usr/share/pkgconfig)

# For headers that are found without being looked for, and for the libraries that the
# libraries need.
set(CMAKE_CXX_STANDARD_INCLUDE_DIRECTORIES ${root}/usr/include)
set(needed -Wl,-rpath-link,${root}/lib/${triplet}:${root}/usr/lib/${triplet})
set(CMAKE_EXE_LINKER_FLAGS_INIT ${needed})
set(CMAKE_SHARED_LINKER_FLAGS_INIT ${needed})
set(CMAKE_MODULE_LINKER_FLAGS_INIT ${needed})

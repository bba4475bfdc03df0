set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_LIBRARY_ARCHITECTURE aarch64-linux-gnu)
set(ENV{PKG_CONFIG_LIBDIR} /usr/lib/aarch64-linux-gnu/pkgconfig:/usr/share/pkgconfig)
# Where it is there, tests run.
find_program(CMAKE_CROSSCOMPILING_EMULATOR NAMES qemu-aarch64 qemu-aarch64-static)
# Home routers run with pages of 4 KiB; the linker's default of 64 KiB would pad the library to several times its size.
set(CMAKE_SHARED_LINKER_FLAGS_INIT -Wl,-z,max-page-size=4096)

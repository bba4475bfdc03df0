# The shared library: what it is made of and how it is linked.
file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/*.cpp)
if(CWMP_LIBUCI_HAS_PROFILE)
    list(REMOVE_ITEM sources ${PROJECT_SOURCE_DIR}/src/config/device_profile.cpp)
endif()
set(CWMP_CONSOLE shell CACHE STRING "How an event reaches the console: by a shell's echo, or direct")
set_property(CACHE CWMP_CONSOLE PROPERTY STRINGS shell direct)
list(FILTER sources EXCLUDE REGEX /core/console_)

add_library(cwmp-datamodel SHARED ${sources} src/core/console_${CWMP_CONSOLE}.cpp)
target_include_directories(cwmp-datamodel
    PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include> $<INSTALL_INTERFACE:include>
    PRIVATE ${PROJECT_SOURCE_DIR}/src)
target_link_libraries(cwmp-datamodel PRIVATE Libuci::Libuci JsonC::JsonC)
set_target_properties(cwmp-datamodel PROPERTIES
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)

cwmp_precompile(cwmp-datamodel)

# Without exceptions nothing of the C++ runtime is needed but the few string functions that are linked statically;
# src/core/runtime.cpp keeps them from drawing in the rest.
target_compile_options(cwmp-datamodel PRIVATE
    -fno-exceptions -fno-rtti -fno-threadsafe-statics -fno-semantic-interposition
    -ffunction-sections -fdata-sections
    $<$<NOT:$<BOOL:${CWMP_SANITIZE}>>:-fno-asynchronous-unwind-tables>
    $<$<NOT:$<BOOL:${CWMP_SANITIZE}>>:-fno-unwind-tables>)
# Size counts for more than speed. Seen as a whole the library is a tenth smaller; so it is with its some 700 relative
# relocations packed, which takes a C library that can unpack them (glibc 2.36, musl 1.2.4).
option(CWMP_PACK_RELOCATIONS "Pack relative relocations; needs glibc 2.36 or musl 1.2.4 on the device" ON)
include(CheckCXXCompilerFlag)
include(CheckLinkerFlag)
check_cxx_compiler_flag(-Oz CWMP_HAS_OZ)
check_linker_flag(CXX "-Wl,--fatal-warnings,-z,pack-relative-relocs" CWMP_LINKER_PACKS)
if(NOT CWMP_SANITIZE)
    set_target_properties(cwmp-datamodel PROPERTIES INTERPROCEDURAL_OPTIMIZATION ON)
    target_compile_options(cwmp-datamodel PRIVATE $<$<BOOL:${CWMP_HAS_OZ}>:-Oz>)
    if(CMAKE_SYSTEM_PROCESSOR MATCHES "aarch64|arm64")
        # Everything lies within the reach of one instruction; a frame pointer, kept here unless told otherwise, costs
        # each function one and serves no unwinder. Constant structures are built from instructions rather than copied
        # from a template, whose pointers take a relocation each.
        target_compile_options(cwmp-datamodel PRIVATE -mcmodel=tiny -fomit-frame-pointer)
        check_cxx_compiler_flag(--param=sra-max-scalarization-size-Osize=64 CWMP_HAS_SRA_SIZE)
        if(CWMP_HAS_SRA_SIZE)
            target_compile_options(cwmp-datamodel PRIVATE --param=sra-max-scalarization-size-Osize=64)
        endif()
    endif()
    if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|amd64")
        # A call through the table takes a byte more than one of a stub of 16 bytes, and there are four to a stub.
        target_compile_options(cwmp-datamodel PRIVATE -fno-plt)
    endif()
    check_cxx_compiler_flag(-flto-partition=one CWMP_HAS_PARTITIONS)
    target_link_options(cwmp-datamodel PRIVATE
        $<$<BOOL:${CWMP_HAS_OZ}>:-Oz>
        $<$<BOOL:${CWMP_HAS_PARTITIONS}>:-flto-partition=one>
        $<$<AND:$<BOOL:${CWMP_PACK_RELOCATIONS}>,$<BOOL:${CWMP_LINKER_PACKS}>>:-Wl,-z,pack-relative-relocs>)
endif()
target_link_options(cwmp-datamodel PRIVATE
    -static-libstdc++ -static-libgcc
    -Wl,--version-script=${PROJECT_SOURCE_DIR}/cmake/exports.map
    -Wl,--gc-sections -Wl,--as-needed -Wl,-Bsymbolic-functions -Wl,--hash-style=gnu
    -Wl,-z,relro,-z,now -Wl,-z,noexecstack -Wl,-z,noseparate-code
    $<$<NOT:$<BOOL:${CWMP_SANITIZE}>>:-Wl,-z,defs>)

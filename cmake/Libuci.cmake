# Provides the target Libuci::Libuci and CWMP_LIBUCI_PREFIX (the prefix of a libuci built here, else empty).
#
# An SDK's or a system's libuci is taken when CMake finds one (CMAKE_PREFIX_PATH, a toolchain file's sysroot).
# Otherwise deps/libuci names the crate that carries the C sources; cargo only fetches it, and both libraries
# are built with the compiler, flags and toolchain file of this build.

find_path(UCI_INCLUDE_DIR uci.h)
find_library(UCI_LIBRARY uci)
find_library(UBOX_LIBRARY ubox)

function(cwmp_run_or_stop message)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT status EQUAL 0)
        message(FATAL_ERROR "${message}\n${output}")
    endif()
endfunction()

function(cwmp_fetch_libuci_sources result)
    find_program(CARGO_EXECUTABLE NAMES cargo cargo-web)
    if(NOT CARGO_EXECUTABLE)
        message(FATAL_ERROR "No libuci found and no cargo to fetch its sources with. Install libuci's development "
                            "files (or point CMAKE_PREFIX_PATH to an SDK's staging directory), or cargo 1.68 or "
                            "later (Debian 12: apt-get install cargo-web).")
    endif()
    execute_process(
        COMMAND ${CARGO_EXECUTABLE} metadata --locked --format-version 1
        WORKING_DIRECTORY ${PROJECT_SOURCE_DIR}/deps/libuci
        RESULT_VARIABLE status
        OUTPUT_VARIABLE metadata
        ERROR_VARIABLE errors)
    if(NOT status EQUAL 0 OR NOT metadata MATCHES "\"manifest_path\":\"([^\"]*/libuci-sys-[^\"/]*)/Cargo.toml\"")
        message(FATAL_ERROR "No libuci found, and ${CARGO_EXECUTABLE} could not fetch its sources: it takes cargo "
                            "1.68 or later (Debian 12: apt-get install cargo-web) and access to the crate "
                            "registry.\n${errors}")
    endif()
    set(${result} ${CMAKE_MATCH_1} PARENT_SCOPE)
endfunction()

function(cwmp_build_libuci prefix)
    find_program(PKG_CONFIG_EXECUTABLE pkg-config)
    if(NOT PKG_CONFIG_EXECUTABLE)
        message(FATAL_ERROR "No libuci found, and building it takes pkg-config to find json-c (Debian 12: apt-get "
                            "install pkg-config).")
    endif()
    cwmp_fetch_libuci_sources(sources)
    set(work ${PROJECT_BINARY_DIR}/libuci-build)
    file(REMOVE_RECURSE ${work} ${prefix})
    # The projects write a generated header next to their sources: build a copy, not the registry's folder.
    file(COPY ${sources}/libubox ${sources}/uci DESTINATION ${work})
    list(JOIN CWMP_SANITIZE_FLAGS " " sanitize_flags)
    set(common
        -G ${CMAKE_GENERATOR}
        -D CMAKE_BUILD_TYPE=${CMAKE_BUILD_TYPE}
        -D CMAKE_C_COMPILER=${CMAKE_C_COMPILER}
        -D CMAKE_TOOLCHAIN_FILE=${CMAKE_TOOLCHAIN_FILE}
        -D "CMAKE_C_FLAGS=${CMAKE_C_FLAGS} -w ${sanitize_flags}"
        -D CMAKE_INSTALL_PREFIX=${prefix}
        -D "CMAKE_INSTALL_RPATH=$ORIGIN/../lib"
        -D CMAKE_PREFIX_PATH=${prefix}
        -D BUILD_LUA=OFF
        -D BUILD_EXAMPLES=OFF
        -Wno-dev)
    foreach(project libubox uci)
        cwmp_run_or_stop("${project} cannot be configured"
            ${CMAKE_COMMAND} -S ${work}/${project} -B ${work}/${project}-build ${common}
            -D ubox_include_dir=${prefix}/include -D ubox=${prefix}/lib/libubox.so)
        cwmp_run_or_stop("${project} cannot be built"
            ${CMAKE_COMMAND} --build ${work}/${project}-build --target install)
    endforeach()
endfunction()

if(UCI_INCLUDE_DIR AND UCI_LIBRARY AND UBOX_LIBRARY AND NOT CWMP_LIBUCI_BUILT)
    set(CWMP_LIBUCI_PREFIX "")
    message(STATUS "libuci: ${UCI_LIBRARY}, found on this system or in the SDK")
else()
    set(CWMP_LIBUCI_PREFIX ${PROJECT_BINARY_DIR}/libuci)
    if(NOT EXISTS ${CWMP_LIBUCI_PREFIX}/lib/libuci.so)
        cwmp_build_libuci(${CWMP_LIBUCI_PREFIX})
    endif()
    set(CWMP_LIBUCI_BUILT TRUE CACHE INTERNAL "libuci is the one built in this build tree")
    set(UCI_INCLUDE_DIR ${CWMP_LIBUCI_PREFIX}/include)
    set(UCI_LIBRARY ${CWMP_LIBUCI_PREFIX}/lib/libuci.so)
    set(UBOX_LIBRARY ${CWMP_LIBUCI_PREFIX}/lib/libubox.so)
    message(STATUS "libuci: ${UCI_LIBRARY}, built from the sources that deps/libuci pins")
endif()

add_library(Libuci::Libuci SHARED IMPORTED)
set_target_properties(Libuci::Libuci PROPERTIES
    IMPORTED_LOCATION ${UCI_LIBRARY}
    INTERFACE_INCLUDE_DIRECTORIES ${UCI_INCLUDE_DIR})
get_filename_component(ubox_directory ${UBOX_LIBRARY} DIRECTORY)
target_link_options(Libuci::Libuci INTERFACE -Wl,-rpath-link,${ubox_directory})

# A device's libuci may bring the device profile calls; ours are built only when it does not.
include(CheckLibraryExists)
get_filename_component(uci_directory ${UCI_LIBRARY} DIRECTORY)
set(CMAKE_REQUIRED_LINK_OPTIONS -Wl,-rpath-link,${ubox_directory} ${CWMP_SANITIZE_FLAGS})
check_library_exists(uci uci_get_profile_eths ${uci_directory} CWMP_LIBUCI_HAS_PROFILE)
unset(CMAKE_REQUIRED_LINK_OPTIONS)

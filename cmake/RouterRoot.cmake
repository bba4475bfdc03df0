# Router roots in the build tree: the demo's, and one for every test program.
set(stage ${PROJECT_BINARY_DIR}/stage)
set(build_root ${PROJECT_SOURCE_DIR}/router/build-root)
file(GLOB model_files CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/model/*.txt)

set(uci_option "")
if(CWMP_LIBUCI_PREFIX)
    set(uci_option --uci ${CWMP_LIBUCI_PREFIX})
endif()

set(emulator_option "")
if(CMAKE_CROSSCOMPILING_EMULATOR)
    set(emulator_option --emulator ${CMAKE_CROSSCOMPILING_EMULATOR})
endif()

# The install tree as it lies in a router.
add_custom_command(
    OUTPUT ${stage}.stamp
    COMMAND ${CMAKE_COMMAND} -E rm -rf ${stage}
    COMMAND ${CMAKE_COMMAND} --install ${PROJECT_BINARY_DIR} --prefix ${stage}/usr
    COMMAND ${CMAKE_COMMAND} -E touch ${stage}.stamp
    DEPENDS cwmp-datamodel dm ${model_files}
    COMMENT "Staging the install tree"
    VERBATIM)
add_custom_target(stage DEPENDS ${stage}.stamp)

# cwmp_router_root(DIRECTORY WORLD [options of build-root]... [DEPENDS targets...]): a rule that makes a root anew
# when something that lies in it changed; its output is DIRECTORY.stamp.
function(cwmp_router_root directory world)
    cmake_parse_arguments(PARSE_ARGV 2 root "" "" DEPENDS)
    set(worlds ${PROJECT_SOURCE_DIR}/router/worlds)
    file(GLOB_RECURSE world_files CONFIGURE_DEPENDS ${worlds}/common/* ${worlds}/${world}/*)
    add_custom_command(
        OUTPUT ${directory}.stamp
        COMMAND ${build_root} --world ${world} --stage ${stage} ${uci_option} ${emulator_option}
                ${root_UNPARSED_ARGUMENTS} ${directory}
        COMMAND ${CMAKE_COMMAND} -E touch ${directory}.stamp
        DEPENDS stage ${stage}.stamp ${build_root} ${world_files} ${root_DEPENDS}
        COMMENT "Building the router root ${directory}"
        VERBATIM)
endfunction()

set(demo_root ${PROJECT_BINARY_DIR}/demo-root)
cwmp_router_root(${demo_root} demo)
add_custom_target(demo-root DEPENDS ${demo_root}.stamp)

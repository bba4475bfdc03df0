# The shared library: what it is made of and how it is linked.
file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/*.cpp)
if(CWMP_LIBUCI_HAS_PROFILE)
    list(REMOVE_ITEM sources ${PROJECT_SOURCE_DIR}/src/config/device_profile.cpp)
endif()

add_library(cwmp-datamodel SHARED ${sources})
target_include_directories(cwmp-datamodel
    PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include> $<INSTALL_INTERFACE:include>
    PRIVATE ${PROJECT_SOURCE_DIR}/src)
target_link_libraries(cwmp-datamodel PRIVATE Libuci::Libuci JsonC::JsonC)
set_target_properties(cwmp-datamodel PROPERTIES
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)

# Without exceptions nothing of the C++ runtime is needed but the few string functions that are linked statically;
# src/core/runtime.cpp keeps them from drawing in the rest.
target_compile_options(cwmp-datamodel PRIVATE
    -fno-exceptions -fno-rtti -fno-threadsafe-statics -fno-semantic-interposition
    -ffunction-sections -fdata-sections
    $<$<NOT:$<BOOL:${CWMP_SANITIZE}>>:-fno-asynchronous-unwind-tables>)
# A tenth smaller when seen as a whole.
if(NOT CWMP_SANITIZE)
    set_target_properties(cwmp-datamodel PROPERTIES INTERPROCEDURAL_OPTIMIZATION ON)
endif()
target_link_options(cwmp-datamodel PRIVATE
    -static-libstdc++ -static-libgcc
    -Wl,--version-script=${PROJECT_SOURCE_DIR}/cmake/exports.map
    -Wl,--gc-sections -Wl,--as-needed -Wl,-Bsymbolic-functions -Wl,--hash-style=gnu -Wl,-O1
    -Wl,-z,relro,-z,now -Wl,-z,noexecstack -Wl,-z,noseparate-code
    $<$<NOT:$<BOOL:${CWMP_SANITIZE}>>:-Wl,-z,defs>)

install(TARGETS cwmp-datamodel LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/cwmp DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

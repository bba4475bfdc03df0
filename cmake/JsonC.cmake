# Provides the target JsonC::JsonC: json-c as an SDK or the system brings it.
find_path(JSONC_INCLUDE_DIR json.h PATH_SUFFIXES json-c)
find_library(JSONC_LIBRARY json-c)
if(NOT JSONC_INCLUDE_DIR OR NOT JSONC_LIBRARY)
    message(FATAL_ERROR "json-c not found (Debian: apt-get install libjson-c-dev)")
endif()
add_library(JsonC::JsonC UNKNOWN IMPORTED)
get_filename_component(jsonc_include_root ${JSONC_INCLUDE_DIR} DIRECTORY)
set_target_properties(JsonC::JsonC PROPERTIES
    IMPORTED_LOCATION ${JSONC_LIBRARY}
    INTERFACE_INCLUDE_DIRECTORIES ${jsonc_include_root})

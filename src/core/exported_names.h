// The library's own symbol table. It holds the exported names already: what a handler logs need not carry its
// name a second time, which for all of them would be 10 KB.
#pragma once

#include <cstdint>

namespace cwmp {

// The hash under which the table lists a name; an underscore at the end is none of it.
constexpr std::uint32_t hash_of_name(const char* name) {
    std::uint32_t hash = 5381;
    for (; *name != '\0'; ++name) {
        if (*name != '_' || name[1] != '\0') hash = hash * 33 + static_cast<unsigned char>(*name);
    }
    return hash;
}

// The exported name with that hash; null when there is none.
const char* exported_name(std::uint32_t hash);

}  // namespace cwmp

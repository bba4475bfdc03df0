// Port mappings: sections of package nat, named by their instance number.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>

#include "config/uci_context.h"

namespace cwmp::port_mapping {

inline constexpr const char* kPackage = "nat";
inline constexpr const char* kType = "rule_vs";
inline constexpr const char* kNumberOption = "port_forwarding_id";
inline constexpr int32_t kMost = 64;
inline constexpr const char* kTooMany = " nat portmapping rule num exceeds \n\n";
inline constexpr const char* kNoInstance = " Index is error\n";
inline constexpr const char* kUnwritten = "UCI set params error\n";

// The mapping of a number in the loaded package; null without one. A section of another type is none.
inline uci_section* find_mapping(const UciContext& context, const std::string& number) {
    uci_section* section = context.section(number.c_str());
    return section != nullptr && std::strcmp(UciContext::type(section), kType) == 0 ? section : nullptr;
}

}  // namespace cwmp::port_mapping

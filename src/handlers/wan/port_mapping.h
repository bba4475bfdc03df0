// Port mappings: sections of package nat, named by their instance number.
#pragma once

#include <cstdint>
#include "handlers/blocks/numbered_section.h"

namespace cwmp::port_mapping {

inline constexpr SectionKind kMappings{"nat", "rule_vs"};
inline constexpr const char* kNumberOption = "port_forwarding_id";
inline constexpr int32_t kMost = 64;
inline constexpr const char* kTooMany = " nat portmapping rule num exceeds \n\n";
inline constexpr const char* kNoInstance = " Index is error\n";
inline constexpr const char* kUnwritten = "UCI set params error\n";

}  // namespace cwmp::port_mapping

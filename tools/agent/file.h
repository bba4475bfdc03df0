#pragma once

#include <cstdio>
#include <memory>

namespace cwmp {

struct CloseFile {
    void operator()(FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<FILE, CloseFile>;

}  // namespace cwmp

// A C stream that closes itself.
#pragma once

#include <cstdio>
#include <memory>

namespace cwmp {

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

}  // namespace cwmp

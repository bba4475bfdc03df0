#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace cwmp {

// Writes the reference into a directory from what was found out: of the files of findings the first is the world that is
// shown in full, the second that world with nothing in it, the others are shown as differences from the first.
void write_pages(const std::filesystem::path& model, const std::filesystem::path& directory,
                 const std::vector<std::string>& files);

}  // namespace cwmp

#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace cwmp {

// The files of a router that a call may change, and their texts.
using Files = std::map<std::string, std::string>;

// Moves them to memory, for this process and its children, where the host allows it: thousands of changes are made
// and undone, and a disk is slow. The root on the disk stays as it is then.
void keep_files_in_memory();

Files read_files();

// Makes the router's files these again. now is what they are, as far as it is known.
void restore_files(const Files& files, const Files& now);
void restore_files(const Files& files);
void write_file(const std::string& path, const std::string& text);

// A change of one place: package.section.option of the live store, with its directory in front elsewhere, or a file.
struct Change {
    std::string place;
    std::optional<std::string> value;  // nothing: it is gone
    bool operator==(const Change&) const = default;
};

std::vector<Change> changes(const Files& before, const Files& after);

// The text of a package with one option (package.section.option without the directory) changed or left out;
// nothing when the section is not there.
std::optional<std::string> with_option(const std::string& text, const std::string& section, const std::string& option,
                                       const std::optional<std::string>& value);

}  // namespace cwmp

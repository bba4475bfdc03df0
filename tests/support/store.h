// The packages of the router root, by option: "wifi.ap.ssid", "tr069/hosts.1.mac", "profile.d/profile.a.b". Read and
// written by libuci itself, but without what somebody has staged.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace stores {

// All that a router may write, as it was when a program in this root called this first. Throws outside a root.
void reset();

// "wifi.ap.ssid=x", whose package and section are made if need be, the section with its own name as type;
// "nat.rule_1:rule", "-wifi.ap.ssid", "-nat.rule_1", "+wifi." an empty package.
void change(const std::string& what);
void write_file(const std::string& path, const std::string& text);
std::string text_of(const std::string& path);

// All options and sections ("nat.rule_1" by its type, "nat." for a package), and other files by path.
using Snapshot = std::map<std::string, std::string>;
Snapshot snapshot();
// "wifi.ap.{ssid,name}=x", "-wifi.ap.ssid", "{nat,tr069/nat}.rule_1:rule", "/tmp/file=text", "/tmp/file+=more";
// an option of `place`, the section that was told last, alone: ".enable=1".
std::vector<std::string> changes(const Snapshot& before, const Snapshot& after, std::string& place);

}  // namespace stores

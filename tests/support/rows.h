// The language of the case files and of told(): rows of a call and the one text that says what it did. See
// docs/testing.md.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace rows {

using Words = std::vector<std::string>;

Words split(const std::string& text, const std::string& end);
std::string trim(const std::string& text);

// "\n", "\x1b" and "{x*300}" as what they stand for.
std::string unescape(const std::string& text);
// The way back: a text of one line in which every byte can be seen.
std::string escape(const std::string& text);

// "a.{b,c}" as "a.b" and "a.c", like a shell.
Words expand(const std::string& text);
// Words between blanks; a quoted one keeps its quote's first mark, so that 'null' is not null.
Words words(const std::string& text);

// Store, scratch and mirror packages by option, "wifi.ap.ssid", "tr069/hosts.1.mac", and other files by path.
using Snapshot = std::map<std::string, std::string>;
Snapshot snapshot();
// What a call changed: "wifi.ap.ssid=x", ".enable=1" of the same section, "-wifi.ap.ssid", "nat.rule_1:rule", "/tmp/file=text", "/tmp/file+=text".
Words changes(const Snapshot& before, const Snapshot& after);

}  // namespace rows

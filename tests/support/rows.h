// The texts of the case files and of told(), see docs/testing.md.
#pragma once

#include <string>
#include <vector>

namespace rows {

using Words = std::vector<std::string>;

Words split(const std::string& text, const std::string& end);
// Everything before `mark`, which is cut off together with the mark; all when there is none.
std::string take_until(std::string& text, const std::string& mark);
// Parts that are empty are left out.
std::string joined(const Words& parts, const std::string& separator);

// "\n", "\x1b" and "{x*300}" as what they stand for.
std::string unescape(const std::string& text);
// The way back: a text of one line in which every byte can be seen.
std::string escape(const std::string& text);

// "a.{b,c}" as "a.b" and "a.c", "{1..3}" as its numbers, like a shell; braces around one word stay.
Words expand(const std::string& text);
// Words between blanks; a quoted one keeps its quote's first mark, so that 'null' is not null.
Words words(const std::string& text);

}  // namespace rows

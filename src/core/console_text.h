// Console lines are written by a shell's echo: what that shell makes of a text in them.
#pragma once

#include <cstdint>
#include <string>

namespace cwmp {

// Whether a console line with this text would run or insert something.
bool console_expands(const char* text);

// The text as a console line shows it.
std::string for_console(const char* text);

// While a silence that is wanted lasts, nothing is logged.
class Silence {
  public:
    explicit Silence(bool wanted);
    ~Silence();
    Silence(const Silence&) = delete;
    Silence& operator=(const Silence&) = delete;

  private:
    std::int32_t level_;
};

}  // namespace cwmp

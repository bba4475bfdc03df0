// What "iwlist ... scan" prints of the networks around, a line at a time.
#pragma once

#include <string>
#include <string_view>

namespace cwmp {

// A fact that a line tells of a network. No option: the line tells none.
struct CellFact {
    const char* option = nullptr;
    std::string value;
};

struct ScanLine {
    enum class Kind { kFacts, kCellBegins, kNoScanning };

    Kind kind = Kind::kFacts;
    CellFact facts[3];
};

// Reads the lines of one log.
class ScanLog {
  public:
    // What the later lines of a network depend on.
    struct Memory {
        std::string rates;
        bool security_known = false;
        bool ciphers_known = false;
    };

    ScanLine read(std::string_view line);

  private:
    Memory memory_;
    bool in_cell_ = false;
};

}  // namespace cwmp

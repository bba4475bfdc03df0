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

// Reads the lines of one log. Remembers of the cell at hand what its later lines depend on.
class ScanLog {
  public:
    ScanLine read(const std::string& line);

  private:
    ScanLine begin_cell(std::string_view line);
    CellFact rates(const std::string& line);
    CellFact security(std::string_view line);
    CellFact ciphers(std::string_view line);

    std::string rates_;
    bool in_cell_ = false;
    bool security_known_ = false;
    bool ciphers_known_ = false;
};

}  // namespace cwmp

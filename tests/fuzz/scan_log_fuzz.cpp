// Scan logs of any content, line by line as the library reads them.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "core/command.h"
#include "handlers/diag/scan_log.h"

namespace {

void require(bool condition) {
    if (!condition) std::abort();
}

bool is_number(std::string_view text, std::string_view characters) {
    return !text.empty() && text.find_first_not_of(characters) == std::string_view::npos;
}

void check(const cwmp::CellFact& fact) {
    if (fact.option == nullptr) return;
    const std::string_view option = fact.option;
    require(fact.value.find('\0') == std::string::npos);
    require(option == "SSID" || !fact.value.empty());
    if (option == "Channel") require(is_number(fact.value, "123456789"));
    if (option == "SignalStrength" || option == "Noise") require(is_number(fact.value, "-0123456789"));
    if (option == "SupportedDataTransferRates") require(is_number(fact.value, "0123456789.,"));
    if (option == "Mode") require(fact.value.size() <= 9);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view text(reinterpret_cast<const char*>(data), size);
    cwmp::ScanLog log;
    bool in_cell = false;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        // A line is cut to pieces of what the buffer holds, and a piece at its first NUL.
        const std::string piece(text.substr(0, std::min(end, cwmp::kLongLine)));
        text.remove_prefix(piece.size() + (piece.size() == end && end < text.size() ? 1 : 0));
        const cwmp::ScanLine line = log.read(piece.c_str());
        in_cell = in_cell || line.kind == cwmp::ScanLine::Kind::kCellBegins;
        for (const auto& fact : line.facts) {
            require(in_cell || fact.option == nullptr);
            check(fact);
        }
    }
    return 0;
}

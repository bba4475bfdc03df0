#include "handlers/diag/scan_log.h"

#include "core/text.h"
#include "cwmp/value_checks.h"

namespace cwmp {
namespace {

constexpr std::string_view kDigits = "0123456789";

bool has(std::string_view text, std::string_view part) { return text.find(part) != std::string_view::npos; }

// The number-th field, counted from 1; empty when there are fewer.
std::string_view field(std::string_view text, int number, std::string_view separators = " "sv) {
    std::size_t position = 0;
    std::string_view found;
    while (number-- > 0) found = next_word(text, position, separators);
    return found;
}

// Empty when the separator is missing.
std::string_view after(std::string_view text, char separator) {
    const std::size_t position = text.find(separator);
    return position == std::string_view::npos ? std::string_view() : text.substr(position + 1);
}

std::string_view leading(std::string_view text, std::string_view characters) {
    return text.substr(0, text.find_first_not_of(characters));
}

// No fact where the line holds no value.
CellFact fact(const char* option, std::string_view value) {
    if (value.empty()) return {};
    return {option, std::string(value)};
}

// "level=-53" tells "-53".
std::string_view negative_number(std::string_view text) {
    const std::size_t sign = text.find('-');
    if (sign == std::string_view::npos) return {};
    const std::size_t digits = leading(text.substr(sign + 1), kDigits).size();
    return digits == 0 ? std::string_view() : text.substr(sign, digits + 1);
}

// A hidden network's name is empty, and that is a fact.
CellFact name(std::string_view line) {
    const std::string_view quoted = after(line, '"');
    return {"SSID", std::string(quoted.substr(0, quoted.find('"')))};
}

// "IEEE80211_MODE_11NG_HT20", where the fourth field is the standard and the fifth the width.
void add_mode_facts(std::string_view line, ScanLine& result) {
    constexpr std::size_t kWidthDigits = 2;
    const std::string_view mode = field(line, 4, "_"sv);
    std::string standards(mode.substr(leading(mode, kDigits).size()));
    result.facts[0] = fact("OperatingStandards", strlowr(standards.data()));
    const std::string_view width = field(line, 5, "_"sv);
    const std::size_t start = width.find_first_of(kDigits);
    if (start == std::string_view::npos) return;
    const std::string_view digits = leading(width.substr(start, kWidthDigits), kDigits);
    result.facts[1] = {"OperatingChannelBandwidth", std::string(digits) + "MHz"};
}

}  // namespace

ScanLine ScanLog::begin_cell(std::string_view line) {
    *this = {};
    in_cell_ = true;
    return {.kind = ScanLine::Kind::kCellBegins, .facts = {fact("BSSID", field(line, 5))}};
}

CellFact ScanLog::rates(const std::string& line) {
    std::string numbers(line.size() + 1, '\0');
    string_split_num(line.c_str(), numbers.data(), static_cast<int>(numbers.size()));
    numbers.resize(numbers.find('\0'));
    if (!rates_.empty() && !numbers.empty()) rates_ += ',';
    rates_ += numbers;
    return fact("SupportedDataTransferRates", rates_);
}

CellFact ScanLog::security(std::string_view line) {
    if (security_known_) {
        return field(line, 2) == "WPA"sv ? CellFact{"SecurityMode", "WPA-WPA2"} : CellFact{};
    }
    security_known_ = true;
    if (!has(line, "/"sv)) return {"SecurityMode", "WPA"};
    return fact("SecurityMode", field(after(line, '/'), 1));
}

CellFact ScanLog::ciphers(std::string_view line) {
    if (ciphers_known_) return {};
    ciphers_known_ = true;
    const std::string_view list = after(line, ':');
    const bool aes = has(list, "CCMP"sv);
    const bool tkip = has(list, "TKIP"sv);
    if (aes) return {"EncryptionMode", tkip ? "TKIP+AES" : "AES"};
    return tkip ? CellFact{"EncryptionMode", "TKIP"} : CellFact{};
}

ScanLine ScanLog::read(const std::string& text) {
    constexpr std::size_t kLongestMode = 9;
    const std::string_view line = text;
    // A network may call itself like one of the keywords that come before its name.
    const std::string_view unquoted = line.substr(0, line.find('"'));
    ScanLine result;
    CellFact& first = result.facts[0];
    if (has(unquoted, "support scanning"sv)) {
        result.kind = ScanLine::Kind::kNoScanning;
    } else if (field(line, 1) == "Cell"sv) {
        return begin_cell(line);
    } else if (!in_cell_) {
        return result;
    } else if (has(line, "ESSID"sv)) {
        first = name(line);
    } else if (has(line, "Mode"sv)) {
        first = fact("Mode", after(line, ':').substr(0, kLongestMode));
    } else if (has(line, "Frequency"sv)) {
        first = fact("Frequency", after(line, ':'));
        result.facts[1] = fact("Channel", leading(field(line, 4), "123456789"sv));
    } else if (has(line, "Signal level"sv)) {
        first = fact("Quality", after(line, '='));
        result.facts[1] = fact("SignalStrength", negative_number(field(line, 3)));
        result.facts[2] = fact("Noise", negative_number(field(line, 6)));
    } else if (has(line, "Mb/s"sv)) {
        first = rates(text);
    } else if (has(line, "bcn_int"sv)) {
        first = fact("BeaconPeriod", after(line, '='));
    } else if (has(line, "Version"sv)) {
        first = security(line);
    } else if (has(line, "Pairwise Ciphers"sv)) {
        first = ciphers(line);
    } else if (has(line, "phy_mode"sv)) {
        add_mode_facts(line, result);
    } else if (has(line, "dtim_period"sv)) {
        first = fact("DTIMPeriod", after(line, '='));
    }
    return result;
}

}  // namespace cwmp

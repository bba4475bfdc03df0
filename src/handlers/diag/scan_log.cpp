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
void name(std::string_view line, CellFact* facts, ScanLog::Memory& /*memory*/) {
    const std::string_view quoted = after(line, '"');
    facts[0] = {"SSID", std::string(quoted.substr(0, quoted.find('"')))};
}

void mode(std::string_view line, CellFact* facts, ScanLog::Memory& /*memory*/) {
    constexpr std::size_t kLongest = 9;
    facts[0] = fact("Mode", after(line, ':').substr(0, kLongest));
}

void frequency(std::string_view line, CellFact* facts, ScanLog::Memory& /*memory*/) {
    facts[0] = fact("Frequency", after(line, ':'));
    facts[1] = fact("Channel", leading(field(line, 4), "123456789"sv));
}

void signal(std::string_view line, CellFact* facts, ScanLog::Memory& /*memory*/) {
    facts[0] = fact("Quality", after(line, '='));
    facts[1] = fact("SignalStrength", negative_number(field(line, 3)));
    facts[2] = fact("Noise", negative_number(field(line, 6)));
}

// "IEEE80211_MODE_11NG_HT20", where the fourth field is the standard and the fifth the width.
void physical_mode(std::string_view line, CellFact* facts, ScanLog::Memory& /*memory*/) {
    constexpr std::size_t kWidthDigits = 2;
    const std::string_view standard = field(line, 4, "_"sv);
    std::string standards(standard.substr(leading(standard, kDigits).size()));
    facts[0] = fact("OperatingStandards", strlowr(standards.data()));
    const std::string_view width = field(line, 5, "_"sv);
    const std::size_t start = width.find_first_of(kDigits);
    if (start == std::string_view::npos) return;
    const std::string_view digits = leading(width.substr(start, kWidthDigits), kDigits);
    facts[1] = {"OperatingChannelBandwidth", std::string(digits) + "MHz"};
}

void beacon(std::string_view line, CellFact* facts, ScanLog::Memory& /*memory*/) {
    facts[0] = fact("BeaconPeriod", after(line, '='));
}
void dtim(std::string_view line, CellFact* facts, ScanLog::Memory& /*memory*/) {
    facts[0] = fact("DTIMPeriod", after(line, '='));
}

void rates(std::string_view text, CellFact* facts, ScanLog::Memory& memory) {
    const std::string line(text);
    std::string numbers(line.size() + 1, '\0');
    string_split_num(line.c_str(), numbers.data(), static_cast<int>(numbers.size()));
    numbers.resize(numbers.find('\0'));
    if (!memory.rates.empty() && !numbers.empty()) memory.rates += ',';
    memory.rates += numbers;
    facts[0] = fact("SupportedDataTransferRates", memory.rates);
}

void security(std::string_view line, CellFact* facts, ScanLog::Memory& memory) {
    if (memory.security_known) {
        if (field(line, 2) == "WPA"sv) facts[0] = {"SecurityMode", "WPA-WPA2"};
        return;
    }
    memory.security_known = true;
    facts[0] = fact("SecurityMode", has(line, "/"sv) ? field(after(line, '/'), 1) : "WPA"sv);
}

void ciphers(std::string_view line, CellFact* facts, ScanLog::Memory& memory) {
    if (memory.ciphers_known) return;
    memory.ciphers_known = true;
    const std::string_view list = after(line, ':');
    const bool aes = has(list, "CCMP"sv);
    const bool tkip = has(list, "TKIP"sv);
    facts[0] = fact("EncryptionMode", aes && tkip ? "TKIP+AES"sv : aes ? "AES"sv : tkip ? "TKIP"sv : ""sv);
}

// The first word that a line holds tells what it is about.
constexpr struct {
    char word[17];
    void (*read)(std::string_view line, CellFact* facts, ScanLog::Memory& memory);
} kKeywords[] = {
    {"ESSID", name},
    {"Mode", mode},
    {"Frequency", frequency},
    {"Signal level", signal},
    {"Mb/s", rates},
    {"bcn_int", beacon},
    {"Version", security},
    {"Pairwise Ciphers", ciphers},
    {"phy_mode", physical_mode},
    {"dtim_period", dtim},
};

}  // namespace

ScanLine ScanLog::read(std::string_view line) {
    // A network may call itself like one of the keywords that come before its name.
    if (has(line.substr(0, line.find('"')), "support scanning"sv)) {
        return {.kind = ScanLine::Kind::kNoScanning, .facts = {}};
    }
    if (field(line, 1) == "Cell"sv) {
        *this = {};
        in_cell_ = true;
        return {.kind = ScanLine::Kind::kCellBegins, .facts = {fact("BSSID", field(line, 5))}};
    }
    ScanLine result;
    for (const auto& keyword : kKeywords) {
        if (!in_cell_ || !has(line, keyword.word)) continue;
        keyword.read(line, result.facts, memory_);
        break;
    }
    return result;
}

}  // namespace cwmp

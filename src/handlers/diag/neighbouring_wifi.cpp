// Device.WiFi.NeighboringWiFiDiagnostic. and its vendor copy: the scan for the networks around.
#include <algorithm>
#include <climits>

#include "config/batch.h"
#include "core/command.h"
#include "core/refusal.h"
#include "core/shell.h"
#include "core/text.h"
#include "cwmp/diagnostics.h"
#include "handlers/blocks/row.h"
#include "handlers/diag/detached.h"
#include "handlers/diag/diagnostics.h"
#include "handlers/diag/process_list.h"
#include "handlers/diag/scan_log.h"
#include "platform/profile.h"

using namespace cwmp;

namespace {

constexpr Section kScan{kDiagnosticsPackage, "NeighboringWiFi"};
constexpr const char* kCellType = "Cell";
constexpr int kMostCells = 15;
constexpr auto cell_option = WiFi_NeighboringWiFi_Param_Get;

bool delete_results() {
    // Far more than a scan leaves: a broken count must not keep the agent busy.
    constexpr int kMostResults = 256;
    const std::string count = read_test(kScan / "ResultNumberOfEntries").value_or("");
    const int last = std::min(decimal_prefix(count.c_str()), kMostResults);
    Batch batch(kDiagnosticsPackage, kScratchStore);
    for (int number = 1; number <= last; ++number) batch.delete_section(decimal(number).c_str(), kCellType);
    batch.set(kScan.section, "ResultNumberOfEntries", "0");
    return batch.commit();
}

std::string scan_command() {
    const auto name24 = profile_option("backhaul_2_4G");
    const auto name5 = profile_option("backhaul_5G");
    const bool named = name24 && name5;
    return formatted(
        "iwlist %s scan > /tmp/tr069/NeighboringWiFi_2_4G_log 2>&1 && "
        "iwlist %s scan > /tmp/tr069/NeighboringWiFi_5G_log 2>&1 & ",
        (named ? shell_word(*name24) : "ath02").c_str(), (named ? shell_word(*name5) : "ath12").c_str());
}

// The number of results that a band's log shows; those before it end with last, which moves on.
int read_band(const char* show_log, int& last) {
    const int end = NeighboringWiFi_Diagnostic(show_log, last);
    const int count = end < 0 ? 0 : end - last;
    last += count;
    return count;
}

bool complete(int count24, int count5) {
    Batch batch(kDiagnosticsPackage, kScratchStore);
    batch.set(kScan.section, "ResultNumberOfEntries_2_4G", decimal(count24).c_str());
    batch.set(kScan.section, "ResultNumberOfEntries_5G", decimal(count5).c_str());
    batch.set(kScan.section, "DiagnosticsState", "Completed");
    return batch.commit();
}

void scan(const std::string& command, Caller caller) {
    run(command);
    write_test(kScan / "last_scan_status", "1");
    if (wait_for_tool({.command = "ps | grep iwlist",
                       .name = "iwlist",
                       .argument = "scan",
                       .cannot_start = "Failed to exec cat ps | grep ping\n"},
                      caller))
        write_test(kScan / "last_scan_status", "0");
    int last = 0;
    const int count24 = read_band("cat /tmp/tr069/NeighboringWiFi_2_4G_log", last);
    const int count5 = read_band("cat /tmp/tr069/NeighboringWiFi_5G_log", last);
    if (complete(count24, count5)) {
        run("cp /tmp/tr069/diagnostics_config /etc/config/diagnostics_config");
        run("saveconfig user-config");
    }
}

int start_scan(Caller caller = Caller::here()) {
    if (!delete_results()) return kRefused;
    const std::string command = scan_command();
    return start_job([&] { scan(command, caller); }, caller);
}

// What is known of a network that was found, whose number is its row.
std::optional<std::string> read_cell(int cell, const char* option) {
    return read_row(kDiagnosticsPackage, cell, option);
}

bool is_24_ghz(const std::string& frequency) { return contains(frequency, "2.4"); }

std::string frequency_band(int cell) {
    const auto frequency = read_cell(cell, "Frequency");
    if (!frequency) return "";
    return is_24_ghz(*frequency) ? "2.4GHz" : "5GHz";
}

std::string mode(int cell) {
    const auto stored = read_cell(cell, "Mode");
    if (!stored) return "";
    return *stored == "Master" ? "Infrastructure" : "ADHoc";
}

const char* standards_of(const std::string& frequency, const std::string& mode) {
    if (is_24_ghz(frequency)) {
        if (contains(mode, "n")) return "b g n";
        return contains(mode, "g") ? "b g" : "b";
    }
    if (contains(mode, "ac")) return "a n ac";
    return contains(mode, "n") ? "a n" : "a";
}

std::string standards(int cell) {
    return standards_of(read_cell(cell, "Frequency").value_or(""), read_cell(cell, "OperatingStandards").value_or(""));
}

std::string extension_channel(int cell) {
    const auto extension = read_cell(cell, "ExtensionChannel");
    if (extension == "MINUS") return "BelowControlChannel";
    return extension == "PLUS" ? "AboveControlChannel" : "None";
}

}  // namespace

int NeighboringWiFi_Diagnostic(const char* command, int first) {
    if (command == nullptr) return kRefused;
    Command output(command);
    if (!output) return REFUSE("Failed to exec %s\n\n", command);
    const int most = std::min(first, INT_MAX - kMostCells) + kMostCells;
    int last = first;
    std::string number;
    std::optional<Batch> network;  // stored as a whole: nobody sees half of one
    ScanLog log;
    ScanLine line;
    while (const auto text = output.line()) {
        line = log.read(*text);
        if (line.kind == ScanLine::Kind::kNoScanning) break;
        if (line.kind == ScanLine::Kind::kCellBegins) {
            if (network && !network->commit()) return last - 1;
            network.reset();
            if (last >= most) return last;
            number = decimal(++last);
            network.emplace(kDiagnosticsPackage, kScratchStore);
            network->set(kScan.section, "ResultNumberOfEntries", number.c_str());
            network->add_section(number.c_str(), kCellType);
        }
        for (const CellFact& fact : line.facts) {
            // What is heard on the air may not be fit to be stored.
            if (!network || fact.option == nullptr || !is_uci_value(fact.value.c_str())) continue;
            network->set(number.c_str(), fact.option, fact.value.c_str());
        }
    }
    if (network && !network->commit()) --last;
    network.reset();
    if (line.kind == ScanLine::Kind::kNoScanning) write_test(kScan / "DiagnosticsState", "Error");
    return last;
}

int WiFi_NeighboringWiFi_Param_Get(int op, va_list args, const char* option) {
    const bool is_strength = std::string_view(option) == "SignalStrength";
    return row_option(op, args, {kDiagnosticsPackage, option, is_strength ? "-200" : ""});
}

HANDLER(WiFi_NeighboringWiFiDiagnostic_DiagnosticsState) {
    const int result =
        test_state(op, args, kScan / "DiagnosticsState", kScan / "last_scan_status", {.accepts = requested});
    return op == CWMP_OP_APPLY && result == kDone ? start_scan() : result;
}

PARAMETER(WiFi_NeighboringWiFiDiagnostic_ResultNumberOfEntries, test_result, kScan / "ResultNumberOfEntries")

PARAMETER(WiFi_NeighboringWiFiDiagnostic_Result_OperatingFrequencyBand, row_text, frequency_band)
PARAMETER(WiFi_NeighboringWiFiDiagnostic_Result_Radio, row_text, frequency_band)
PARAMETER(WiFi_NeighboringWiFiDiagnostic_Result_Mode, row_text, mode)
PARAMETER(WiFi_NeighboringWiFiDiagnostic_Result_SupportedStandards, row_text, standards)
PARAMETER(WiFi_NeighboringWiFiDiagnostic_Result_X_QM_ExtensionChannel, row_text, extension_channel)
PARAMETER(WiFi_NeighboringWiFiDiagnostic_Result_SSID, cell_option, "SSID")
PARAMETER(WiFi_NeighboringWiFiDiagnostic_Result_BSSID, cell_option, "BSSID")
PARAMETER(WiFi_NeighboringWiFiDiagnostic_Result_SupportedDataTransferRates, cell_option, "SupportedDataTransferRates")
PARAMETER(WiFi_NeighboringWiFiDiagnostic_Result_OperatingStandards, cell_option, "OperatingStandards")
PARAMETER(WiFi_NeighboringWiFiDiagnostic_Result_OperatingChannelBandwidth, cell_option, "OperatingChannelBandwidth")
PARAMETER(WiFi_NeighboringWiFiDiagnostic_Result_Channel, cell_option, "Channel")
PARAMETER(WiFi_NeighboringWiFiDiagnostic_Result_SignalStrength, cell_option, "SignalStrength")
PARAMETER(WiFi_NeighboringWiFiDiagnostic_Result_Noise, cell_option, "Noise")
PARAMETER(WiFi_NeighboringWiFiDiagnostic_Result_SecurityModeEnabled, cell_option, "SecurityMode")
PARAMETER(WiFi_NeighboringWiFiDiagnostic_Result_EncryptionMode, cell_option, "EncryptionMode")
PARAMETER(WiFi_NeighboringWiFiDiagnostic_Result_DTIMPeriod, cell_option, "DTIMPeriod")
PARAMETER(WiFi_NeighboringWiFiDiagnostic_Result_BeaconPeriod, cell_option, "BeaconPeriod")

ALIAS(X_QM_NeighboringWiFiDiagnostic_DiagnosticsState, WiFi_NeighboringWiFiDiagnostic_DiagnosticsState)
ALIAS(X_QM_NeighboringWiFiDiagnostic_ResultNumberOfEntries, WiFi_NeighboringWiFiDiagnostic_ResultNumberOfEntries)
ALIAS(X_QM_NeighboringWiFiDiagnostic_Result_OperatingFrequencyBand,
      WiFi_NeighboringWiFiDiagnostic_Result_OperatingFrequencyBand)
ALIAS(X_QM_NeighboringWiFiDiagnostic_Result_Radio, WiFi_NeighboringWiFiDiagnostic_Result_Radio)
ALIAS(X_QM_NeighboringWiFiDiagnostic_Result_Mode, WiFi_NeighboringWiFiDiagnostic_Result_Mode)
ALIAS(X_QM_NeighboringWiFiDiagnostic_Result_SupportedStandards,
      WiFi_NeighboringWiFiDiagnostic_Result_SupportedStandards)
ALIAS(X_QM_NeighboringWiFiDiagnostic_Result_X_QM_ExtensionChannel,
      WiFi_NeighboringWiFiDiagnostic_Result_X_QM_ExtensionChannel)
ALIAS(X_QM_NeighboringWiFiDiagnostic_Result_SSID, WiFi_NeighboringWiFiDiagnostic_Result_SSID)
ALIAS(X_QM_NeighboringWiFiDiagnostic_Result_BSSID, WiFi_NeighboringWiFiDiagnostic_Result_BSSID)
ALIAS(X_QM_NeighboringWiFiDiagnostic_Result_SupportedDataTransferRates,
      WiFi_NeighboringWiFiDiagnostic_Result_SupportedDataTransferRates)
ALIAS(X_QM_NeighboringWiFiDiagnostic_Result_OperatingStandards,
      WiFi_NeighboringWiFiDiagnostic_Result_OperatingStandards)
ALIAS(X_QM_NeighboringWiFiDiagnostic_Result_OperatingChannelBandwidth,
      WiFi_NeighboringWiFiDiagnostic_Result_OperatingChannelBandwidth)
ALIAS(X_QM_NeighboringWiFiDiagnostic_Result_Channel, WiFi_NeighboringWiFiDiagnostic_Result_Channel)
ALIAS(X_QM_NeighboringWiFiDiagnostic_Result_SignalStrength, WiFi_NeighboringWiFiDiagnostic_Result_SignalStrength)
ALIAS(X_QM_NeighboringWiFiDiagnostic_Result_Noise, WiFi_NeighboringWiFiDiagnostic_Result_Noise)
ALIAS(X_QM_NeighboringWiFiDiagnostic_Result_SecurityModeEnabled,
      WiFi_NeighboringWiFiDiagnostic_Result_SecurityModeEnabled)
ALIAS(X_QM_NeighboringWiFiDiagnostic_Result_EncryptionMode, WiFi_NeighboringWiFiDiagnostic_Result_EncryptionMode)
ALIAS(X_QM_NeighboringWiFiDiagnostic_Result_DTIMPeriod, WiFi_NeighboringWiFiDiagnostic_Result_DTIMPeriod)
ALIAS(X_QM_NeighboringWiFiDiagnostic_Result_BeaconPeriod, WiFi_NeighboringWiFiDiagnostic_Result_BeaconPeriod)

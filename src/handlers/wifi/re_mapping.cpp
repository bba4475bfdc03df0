// X_QM_RE_MAPPING.{i}.: the satellites of the mesh as the controller sees them.
#include "core/text.h"
#include "cwmp/value_checks.h"
#include "handlers/blocks/command_line.h"
#include "handlers/blocks/row.h"
#include "handlers/wifi/selection.h"

using namespace cwmp;

namespace {

constexpr const char* kSatellites = "meshinfo_slave";
constexpr const char* kRateColumn = "4";
constexpr const char* kRssiColumn = "6";

// A figure of the satellite's link to a radio of this router, which lists its stations.
int link_figure(int op, Arguments args, const Radio& radio, const char* column, Caller caller = Caller::here()) {
    if (op != CWMP_OP_GET) return kRefused;
    const GetArguments get(args);
    const auto satellite = require_row(get.locate(), caller);
    if (!satellite) return kRefused;
    const auto bssid = read_row(kSatellites, *satellite, radio.bssid_option);
    // The text goes into a command: anything but an address is none.
    if (!bssid || libutil_netChkStrMacAddr(bssid->c_str()) == 0) return get.answer("");
    const auto command = formatted("wlanconfig %s list | grep -i %s | awk  -F ' ' '{print $%s}' ",
                                   interface_word(radio.backhaul).c_str(), bssid->c_str(), column);
    const auto line = first_line({command.c_str(), kLongLine, "Failed to get rssi and txrate info. \n"}, caller);
    return line ? get.answer(leading_digits(*line)) : kRefused;
}

std::string active(int satellite) {
    auto status = read_row(kSatellites, satellite, "group_status").value_or("");
    if (status == "connected") return "1";
    return status == "disconnected" ? "0" : status;
}

}  // namespace

PARAMETER(X_QM_RE_MAPPINGNumberOfEntries, row_total, kSatellites, "total")

PARAMETER(X_QM_RE_MAPPING_X_QM_DevName, row_option, {kSatellites, "device_model"})
PARAMETER(X_QM_RE_MAPPING_X_QM_ReMac, row_option, {kSatellites, "mac"})
PARAMETER(X_QM_RE_MAPPING_Status_ConnDevMac, row_option, {kSatellites, "parent_mac"})
PARAMETER(X_QM_RE_MAPPING_Status_ConnWlMac24g, row_option, {kSatellites, "bssid_sta_2g"})
PARAMETER(X_QM_RE_MAPPING_Status_ConnWlMac5g, row_option, {kSatellites, "bssid_sta_5g"})
PARAMETER(X_QM_RE_MAPPING_Status_ConnWlQuality24g, row_option, {kSatellites, "signal_level_2g"})
PARAMETER(X_QM_RE_MAPPING_Status_ConnWlQuality5g, row_option, {kSatellites, "signal_level_5g"})

PARAMETER(X_QM_RE_MAPPING_Status_Active, row_text, active)

PARAMETER(X_QM_RE_MAPPING_Status_ConnWlTxRate24g, link_figure, kRadio2G, kRateColumn)
PARAMETER(X_QM_RE_MAPPING_Status_ConnWlTxRate5g, link_figure, kRadio5G, kRateColumn)
PARAMETER(X_QM_RE_MAPPING_Status_ConnWlRssi24g, link_figure, kRadio2G, kRssiColumn)
PARAMETER(X_QM_RE_MAPPING_Status_ConnWlRssi5g, link_figure, kRadio5G, kRssiColumn)

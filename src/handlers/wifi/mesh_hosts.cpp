// X_QM_MeshFeature.Host.{i}.: the devices of the mesh as the controller shows them, and WPS on each.
#include <cstring>

#include "core/refusal.h"
#include "core/text.h"
#include "cwmp/value_checks.h"
#include "cwmp/wireless.h"
#include "handlers/blocks/row.h"
#include "platform/check_script.h"

using namespace cwmp;

namespace {

constexpr const char* kIdCharacters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_:.";

// The id goes into a command: nothing but the characters of one is let through.
bool is_device_id(const std::string& text) {
    return !text.empty() && text.find_first_not_of(kIdCharacters) == std::string::npos;
}

int set_wps(const SetArguments& set, int device) {
    constexpr std::size_t kLongestAction = 511 - std::char_traits<char>::length(kCheckScript) - 1;
    const std::string value = set.value();
    if (value != "0" && value != "1") return kRefused;
    const auto id = read_row(kMeshDevices, device, "deviceid");
    if (!id || !is_device_id(*id)) return kRefused;
    const auto action = "wps_enable \"" + *id + "\" \"" + value + "\"";
    if (action.size() > kLongestAction) return kRefused;
    run_check_script(action);
    return kDone;
}

}  // namespace

int get_meshfeature_info(int op, va_list args, const char* option) {
    if (op != CWMP_OP_GET) return kRefused;
    const GetArguments get(args);
    const auto device = require_row(get.locate());
    if (!device) return kRefused;
    if (option == nullptr) return REFUSE("get_meshfeture_info:option is null\n");
    const bool is_uptime = std::strcmp(option, "uptime") == 0;
    auto text = read_row(kMeshDevices, *device, option).value_or(is_uptime ? "" : " ");
    const bool is_address = std::strcmp(option, "mac") == 0 || std::strcmp(option, "parent_mac") == 0;
    if (is_address) adjustMacFmt(text.data(), 1, ':');
    return get.answer(text);
}

PARAMETER(X_QM_MeshFeature_HostNumberOfEntries, row_total, kMeshDevices, "count")

HANDLER(X_QM_MeshFeature_Host_WPS_Enable) {
    enter_pass(op);
    const auto device = require_row(GetArguments(args).locate());
    if (!device) return kRefused;
    if (op != CWMP_OP_GET) return change(op, args, [&](const SetArguments& set) { return set_wps(set, *device); });
    // Makes the script bring the table up to date.
    refresh(formatted("%s wps_status", kCheckScript));
    const bool busy = read_row(kMeshDevices, *device, "wps_status").value_or("idle") != "idle";
    return answer(args, busy ? "1" : "0");
}

PARAMETER(X_QM_MeshFeature_Host_WPS_Remaining_Time, get_meshfeature_info, "remaing_time")
PARAMETER(X_QM_MeshFeature_Host_WPS_Client_Accessed, get_meshfeature_info, "client_accessed")
PARAMETER(X_QM_MeshFeature_Host_HostName, get_meshfeature_info, "nickname")
PARAMETER(X_QM_MeshFeature_Host_HostStatus, get_meshfeature_info, "status")
PARAMETER(X_QM_MeshFeature_Host_SoftwareVersion, get_meshfeature_info, "fw_version")
PARAMETER(X_QM_MeshFeature_Host_HostAddress, get_meshfeature_info, "mac")
PARAMETER(X_QM_MeshFeature_Host_Role, get_meshfeature_info, "role")
PARAMETER(X_QM_MeshFeature_Host_DeviceModel, get_meshfeature_info, "device_model")
PARAMETER(X_QM_MeshFeature_Host_Uptime, get_meshfeature_info, "uptime")
PARAMETER(X_QM_MeshFeature_Host_Parent_Mac, get_meshfeature_info, "parent_mac")
PARAMETER(X_QM_MeshFeature_Host_Connection_type, get_meshfeature_info, "connection_type")
PARAMETER(X_QM_MeshFeature_Host_Wireless_iface_Rssi, get_meshfeature_info, "backhaul_rssi")
PARAMETER(X_QM_MeshFeature_Host_Inet_status, get_meshfeature_info, "inet_status")

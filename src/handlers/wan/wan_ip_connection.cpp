// InternetGatewayDevice.WANDevice.{i}.WANConnectionDevice.{i}.WANIPConnection.{i}.
#include <cstring>

#include "config/batch.h"
#include "config/store.h"
#include "core/refusal.h"
#include "core/shell.h"
#include "core/table.h"
#include "core/text.h"
#include "cwmp/revert_journal.h"
#include "cwmp/uci_access.h"
#include "cwmp/value_checks.h"
#include "cwmp/wan.h"
#include "handlers/blocks/accepts.h"
#include "handlers/blocks/command_line.h"
#include "handlers/blocks/staged.h"
#include "handlers/wan/connection.h"
#include "platform/check_script.h"
#include "platform/link_commands.h"

using namespace cwmp;
using namespace cwmp::wan;

namespace {

constexpr const char* kNoAddress = "0.0.0.0";
constexpr const char* kNoMac = "0:0:0:0:0:0";

// Those of the internet and of the management connection.
using Commands = const char* [2];
constexpr Commands kMac = {"ifconfig br-wan | grep HWaddr| awk '{print $5}'",
                           "ifconfig br-mg | grep HWaddr| awk '{print $5}'"};

std::optional<std::string> live_value(const int* locate, const char* const commands[2], const char* missing) {
    const Caller caller = {"_get_wanIPconnection", __LINE__};
    const auto number = require_connection(locate, caller);
    if (!number) return std::nullopt;
    auto line = first_line({commands[*number - 1], kLongLine, "Failed to get wan or mg status\n\n"}, caller);
    if (line && line->empty()) return missing;
    return line;
}

// A field of the group of settings, whose live value a command tells.
int live_field(int op, Arguments args, std::string (*command)(const char* of), const char* internet,
               const char* management, int field) {
    if (op != CWMP_OP_GET) return staged(op, args, {CWMP_STAGED_WAN, field});
    const std::string texts[] = {command(internet), command(management)};
    const char* const commands[] = {texts[0].c_str(), texts[1].c_str()};
    const GetArguments get(args);
    return get.answer(live_value(get.locate(), commands, kNoAddress));
}

std::string address_of(const char* interface) { return formatted(kAddressOf, interface); }
std::string gateway_of(const char* interface) { return formatted(kGatewayOf, interface); }
std::string mask_of(const char* device) { return formatted(kMaskOf, device); }

struct StagedName {
    const char* name;
    int option;
};

constexpr StagedName kStagedNames[] = {{"ExternalIPAddress", CWMP_WAN_ADDRESS},
                                       {"SubnetMask", CWMP_WAN_MASK},
                                       {"DefaultGateway", CWMP_WAN_GATEWAY},
                                       {"AddressingType", CWMP_WAN_TYPE}};

}  // namespace

int _get_wanIPconnection(const int* locate, char* value, const char* const commands[2], const char* missing) {
    const auto line = live_value(locate, commands, missing);
    if (!line || value == nullptr) return kRefused;
    std::memcpy(value, line->c_str(), line->size() + 1);
    return kDone;
}

int get_StasticOfWAN_by_name(int op, va_list args, const char* const commands[2], const char* missing,
                             const char* name) {
    if (op == CWMP_OP_GET) {
        const GetArguments get(args);
        return get.answer(live_value(get.locate(), commands, missing));
    }
    const auto* field = row_with(kStagedNames, &StagedName::name, name);
    return field != nullptr ? staged(op, args, {CWMP_STAGED_WAN, field->option}) : kRefused;
}

PARAMETER(LANDevice_WANDevice_WANConnectionDevice_WANIPConnection_Uptime, command_line,
          {kUptimeOfDevice, kLongLine, "Failed to get  uptime\n"})

PARAMETER(WANDevice_WANConnectionDevice_WANIPConnection_ExternalIPAddress, live_field, address_of, "wan", "mg",
          CWMP_WAN_ADDRESS)
PARAMETER(WANDevice_WANConnectionDevice_WANIPConnection_DefaultGateway, live_field, gateway_of, "wan", "mg",
          CWMP_WAN_GATEWAY)
PARAMETER(WANDevice_WANConnectionDevice_WANIPConnection_SubnetMask, live_field, mask_of, "br-wan", "br-mg",
          CWMP_WAN_MASK)

READ_ONLY(WANDevice_WANConnectionDevice_WANIPConnection_AddressingType) {
    static constexpr const char* kTypes[] = {"None", "Static", "DHCP"};
    return get.answer(kTypes[connection_of(get.locate())]);
}

READ_ONLY(WANDevice_WANConnectionDevice_WANIPConnection_Name) {
    const auto number = require_connection(get.locate());
    return number ? get.answer(*number == 1 ? "br-wan" : "br-mg") : kRefused;
}

PARAMETER(WANDevice_WANConnectionDevice_WANIPConnection_ConnectionStatus, connection_status, "wan",
          "Failed to get wan or mg status\n\n")

HANDLER(WANDevice_WANConnectionDevice_WANIPConnection_DNSServers) {
    if (op != CWMP_OP_GET) return staged(op, args, {CWMP_STAGED_WAN, CWMP_WAN_DNS_SERVERS});
    const GetArguments get(args);
    const auto servers = ip_name_servers(get.locate());
    if (!servers) return REFUSE(" get wan dns-server error\n\n");
    return get.answer(*servers);
}

namespace {

constexpr OptionPath kCloneResult{"check", "mac_clone", "result"};

// The script takes the address over; the journal lets the device's apply scripts give back the one before.
bool clone_mac(const int* locate, const std::string& mac) {
    // An earlier answer must not be taken for the one to come.
    Batch answer(kCloneResult.package, kScratchStore);
    answer.set(kCloneResult.section, kCloneResult.option, "");
    if (!answer.commit()) return false;
    if (const auto current = live_value(locate, kMac, kNoMac)) {
        add_revert_item("macclone", current->c_str(), nullptr);
    }
    run_check_script("macclone " + shell_word(mac));
    save_to_cwmp_config();
    return read_option(kCloneResult, kScratchStore) == "1";
}

// Checked on every pass; the address changes on the last one only, so that the journal never takes the new
// address for the one before.
int set_mac(const SetArguments& set, Caller caller) {
    if (CheckValidMacAddr(set.value()) != 1) return refuse(caller, kError, "the format of MAC is wrong \n");
    if (set.op() != CWMP_OP_APPLY) return kDone;
    if (!clone_mac(set.locate(), set.value())) return refuse(caller, kError, "set MACAddress error\n");
    log_event(caller, kError, "NETWORK_RELOAD:%d\n", CWMP_APPLY_WAN);
    set.raise(CWMP_APPLY_WAN);
    return kDone;
}

int set_igmp_proxy(const SetArguments& set, Caller /*caller*/) {
    const auto switched = boolean(set.value());
    if (!switched) return kRefused;
    run_check_script(formatted("iptv_igmpproxy_enable \"%s\"", *switched == "1" ? "on" : "off"));
    return kDone;
}

}  // namespace

WRITABLE(WANDevice_WANConnectionDevice_WANIPConnection_MACAddress, set_mac) {
    return get.answer(live_value(get.locate(), kMac, kNoMac));
}

WRITABLE(WANDevice_WANConnectionDevice_WANIPConnection_X_QM_IGMPProxyEnabled, set_igmp_proxy) {
    const auto stored = read_option({"iptv", "iptv", "igmp_enable"}).value_or("");
    if (stored.starts_with("on")) return get.answer("1");
    return stored.starts_with("off") ? get.answer("0") : kRefused;
}

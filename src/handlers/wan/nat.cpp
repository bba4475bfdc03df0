// Device.NAT.InterfaceSetting.{i}. and Device.NAT.X_QM_DmzHostCfg.
#include "config/store.h"
#include "core/addresses.h"
#include "core/refusal.h"
#include "core/text.h"
#include "cwmp/value_checks.h"
#include "handlers/blocks/command_line.h"

using namespace cwmp;

HANDLER(NAT_InterfaceSettingNumberOfEntries) { return constant(op, args, "1"); }
HANDLER(NAT_InterfaceSetting_Interface) { return constant(op, args, "Device.IP.Interface.2."); }
HANDLER(NAT_InterfaceSetting_X_QM_FullconeNATEnabled) { return constant(op, args, "0"); }

HANDLER(NAT_InterfaceSetting_Enable) {
    if (op != CWMP_OP_GET) return kRefused;
    const bool on = read_option({"nat", "nat_global", "enable"}) == "on";
    return GetArguments(args).answer(on ? "1" : "0");
}

HANDLER(NAT_InterfaceSetting_Status) {
    if (op != CWMP_OP_GET) return kRefused;
    const std::string line =
        first_line({"ifconfig br-wan | grep MTU | awk '{print $1}'", kLongLine, "Failed to popen\n"})
            .value_or("");
    std::size_t position = 0;
    return GetArguments(args).answer(next_word(line, position) == "UP" ? "Enabled" : "Disabled");
}

namespace {

constexpr Section kDmz{"nat", "dmz01"};
constexpr Section kLan{"network", "lan"};

bool is_host_address(const char* text) {
    return libutil_netChkDotIpAddr(text) == 1 && libutil_netChkLegalIpAddr(text) == 1;
}

std::optional<std::string> dmz_address() {
    auto stored = read_option(kDmz / "ipaddr");
    if (stored && !is_host_address(stored->c_str())) stored.reset();
    return stored;
}

std::optional<std::string> read_or_log(const OptionPath& at, const char* event, Caller caller) {
    auto stored = read_option(at);
    if (!stored) refuse(caller, kError, "%s", event);
    return stored;
}

// A host of the LAN, and not the router itself.
bool is_lan_host(const char* text, Caller caller) {
    if (!is_host_address(text)) return false;
    const auto address = read_or_log(kLan / "ipaddr", "failed to get lan ip\n", caller);
    if (!address) return false;
    const auto mask = read_or_log(kLan / "netmask", "failed to get lan mask\n", caller);
    if (!mask) return false;
    return address_number(text) != address_number(address->c_str()) &&
           libutil_netChkSameSubnet(text, nullptr, address->c_str(), mask->c_str()) == 1;
}

int set_dmz_address(int op, Arguments args, Caller caller = Caller::here()) {
    const SetArguments set(op, args);
    if (set.value() == nullptr || !is_lan_host(set.value(), caller)) return kRefused;
    if (!write_option(kDmz / "ipaddr", set.value()))
        return refuse(caller, kError, "failed to set dmz ipaddr\n");
    const auto enable = read_or_log(kDmz / "enable", "failed to get dmz config\n", caller);
    if (!enable) return kRefused;
    if (*enable == "on") set.raise(CWMP_APPLY_NAT);
    return kDone;
}

int set_dmz_enable(int op, Arguments args, Caller caller = Caller::here()) {
    const SetArguments set(op, args);
    if (set.value() == nullptr) return kRefused;
    const bool on = std::string_view(set.value()) == "1";
    if (!write_option(kDmz / "enable", on ? "on" : "off"))
        return refuse(caller, kError, "failed to set dmz enable\n");
    if (dmz_address()) set.raise(CWMP_APPLY_NAT);
    return kDone;
}

}  // namespace

HANDLER(NAT_X_QM_DmzHostCfg_Enable) {
    if (op != CWMP_OP_GET) return set_dmz_enable(op, args);
    const auto enable = read_or_log(kDmz / "enable", "failed to find dmz config\n", Caller::here());
    return GetArguments(args).answer(enable == "on" ? "1" : "0");
}

HANDLER(NAT_X_QM_DmzHostCfg_IPAddress) {
    if (op != CWMP_OP_GET) return set_dmz_address(op, args);
    return GetArguments(args).answer(dmz_address().value_or(""));
}

// Device.NAT.InterfaceSetting.{i}. and Device.NAT.X_QM_DmzHostCfg.
#include "core/refusal.h"
#include "core/text.h"
#include "cwmp/value_checks.h"
#include "handlers/blocks/command_line.h"
#include "handlers/blocks/lan_network.h"
#include "handlers/blocks/option.h"
#include "platform/link_commands.h"

using namespace cwmp;

PARAMETER(NAT_InterfaceSettingNumberOfEntries, constant, "1")
PARAMETER(NAT_InterfaceSetting_Interface, constant, "Device.IP.Interface.2.")
PARAMETER(NAT_InterfaceSetting_X_QM_FullconeNATEnabled, constant, "0")

READ_ONLY(NAT_InterfaceSetting_Enable) {
    const bool on = read_option({"nat", "nat_global", "enable"}) == "on";
    return get.answer(on ? "1" : "0");
}

READ_ONLY(NAT_InterfaceSetting_Status) {
    const auto command = formatted(kFlagsOf, "br-wan");
    const std::string line = first_line({command.c_str(), kLongLine, "Failed to popen\n"}).value_or("");
    std::size_t position = 0;
    return get.answer(next_word(line, position) == "UP" ? "Enabled" : "Disabled");
}

namespace {

constexpr Section kDmz{"nat", "dmz01"};

bool is_host_address(const char* text) {
    return libutil_netChkDotIpAddr(text) == 1 && libutil_netChkLegalIpAddr(text) == 1;
}

std::optional<std::string> dmz_address() {
    auto stored = read_option(kDmz / "ipaddr");
    if (stored && !is_host_address(stored->c_str())) stored.reset();
    return stored;
}

int set_dmz_address(const SetArguments& set, Caller caller) {
    if (!is_host_address(set.value())) return kRefused;
    const auto lan = read_lan(caller);
    if (!lan || !lan->has_host(set.value())) return kRefused;
    if (!write_option(kDmz / "ipaddr", set.value())) return refuse(caller, kError, "failed to set dmz ipaddr\n");
    const auto enable = read_reported(kDmz / "enable", "failed to get dmz config\n", caller);
    if (!enable) return kRefused;
    if (*enable == "on") set.raise(CWMP_APPLY_NAT);
    return kDone;
}

int set_dmz_enable(const SetArguments& set, Caller caller) {
    const bool on = std::string_view(set.value()) == "1";
    if (!write_option(kDmz / "enable", on ? "on" : "off")) return refuse(caller, kError, "failed to set dmz enable\n");
    if (dmz_address()) set.raise(CWMP_APPLY_NAT);
    return kDone;
}

}  // namespace

WRITABLE(NAT_X_QM_DmzHostCfg_Enable, set_dmz_enable) {
    const auto enable = read_reported(kDmz / "enable", "failed to find dmz config\n");
    return get.answer(enable == "on" ? "1" : "0");
}

WRITABLE(NAT_X_QM_DmzHostCfg_IPAddress, set_dmz_address) { return get.answer(dmz_address().value_or("")); }

// InternetGatewayDevice.ManagementServer. and Device.ManagementServer.
#include <cstddef>
#include <cstdlib>
#include <cstring>

#include "core/command.h"
#include "core/text.h"
#include "cwmp/agent_state.h"
#include "handlers/blocks/option.h"

using namespace cwmp;

namespace {

constexpr Section kInfo = {"cwmp", "info"};
constexpr Section kStun = {"cwmp", "tr111"};
constexpr Section kXmpp = {"cwmp", "xmpp_conn"};
constexpr Section kLocal = {"cwmp_local", "cwmp_cfg"};
constexpr Section kLocalStun = {"cwmp_local", "tr111"};

constexpr const char* kXmppConnection = "Device.XMPP.Connection.1.";

// The agent's record follows the usual arguments; null when the agent has none to show.
const cwmp_agent_state* agent_state(int op, Arguments args) {
    va_list copy;
    va_copy(copy, args);
    va_arg(copy, int*);
    va_arg(copy, char*);
    if (op != CWMP_OP_GET) va_arg(copy, unsigned int*);
    const auto* state = va_arg(copy, const cwmp_agent_state*);
    va_end(copy);
    return state;
}

template <std::size_t size>
std::string field(const char (&text)[size]) {
    return {text, strnlen(text, size)};
}

void save_device_configuration() { run("saveconfig device-config"); }

void log_value(Caller caller, const char* event, const char* value) {
    log_event(caller, kError, "%s %s\n\n", event, value);
}

// A setting whose new value is logged, in clear, before anything is done with it.
int server_setting(int op, Arguments args, const char* event, Option setting, Caller caller = Caller::here()) {
    setting.apply = CWMP_APPLY_MANAGEMENT_SERVER;
    setting.write_failure_is_done = true;
    if (op == CWMP_OP_GET) return option(op, args, setting);
    return change(op, args, [&](const SetArguments& set) {
        log_value(caller, event, set.value());
        return option(set, setting);
    });
}

int stun_setting(int op, Arguments args, const char* name, const char* missing, bool secret = false) {
    return option(op, args,
                  {.at = kStun / name,
                   .missing = missing,
                   .apply = CWMP_APPLY_STUN,
                   .secret = secret,
                   .write_failure_is_done = true});
}

// Marks what the agent must find after a restart. must_save becomes true when the mark was not there yet.
bool mark_once(const OptionPath& at, bool& must_save) {
    if (read_option(at).value_or("0") != "0") return true;
    must_save = true;
    return write_leniently(at, "1");
}

int set_url(const SetArguments& set, const cwmp_agent_state* agent, Caller caller) {
    log_value(caller, "cwmp, URL val", set.value());
    const bool is_new = agent != nullptr && field(agent->acs_url) != set.value();
    bool must_save = false;
    if (is_new && !mark_once(kLocal / "reset_flag", must_save)) return kRefused;
    if (!write_leniently(kInfo / "url", set.value())) return kRefused;
    if (!mark_once(kLocal / "ever_set", must_save)) return kRefused;
    set.raise(CWMP_APPLY_MANAGEMENT_SERVER);
    if (must_save) save_device_configuration();
    return kDone;
}

}  // namespace

HANDLER(ManagementServer_URL) {
    const auto* agent = agent_state(op, args);
    const Caller caller = Caller::here();
    if (op != CWMP_OP_GET)
        return change(op, args, [&](const SetArguments& set) { return set_url(set, agent, caller); });
    return agent != nullptr ? answer(args, field(agent->acs_url)) : kRefused;
}

PARAMETER(ManagementServer_Username, server_setting, "cwmp, username val", {.at = kInfo / "username"})
PARAMETER(ManagementServer_Password, server_setting, "cwmp password, val", {.at = kInfo / "password", .secret = true})

HANDLER(ManagementServer_EnableCWMP) {
    const Option setting = {.at = kInfo / "enable", .accepts = zero_or_one};
    if (op == CWMP_OP_GET) return option(op, args, setting, {.unreadable = " get ACS_enable error\n\n"});
    return server_setting(op, args, "ENABLE cwmp, val", setting);
}

PARAMETER(ManagementServer_PeriodicInformEnable, server_setting, "cwmp, peridicInformEnable val",
          {.at = kInfo / "inform_enable", .missing = "1", .accepts = zero_or_one})
PARAMETER(ManagementServer_PeriodicInformInterval, server_setting, "cwmp, peridicInformInterval val",
          {.at = kInfo / "inform_interval"})
HANDLER(ManagementServer_PeriodicInformTime) {
    const int result = server_setting(op, args, "cwmp_local, inform_time val", {.at = kLocal / "inform_time"});
    if (op != CWMP_OP_GET && result == kDone) save_device_configuration();
    return result;
}

PARAMETER(ManagementServer_ParameterKey, read_only_option, {.at = kLocal / "parameterKey"})

HANDLER(ManagementServer_ConnectionRequestURL) {
    constexpr std::size_t kLongest = 256;
    if (op != CWMP_OP_GET) return kRefused;
    const auto* agent = agent_state(op, args);
    if (agent == nullptr) return kRefused;
    const std::string url =
        formatted("http://%s:%d%s", field(agent->host).c_str(), agent->port, field(agent->path).c_str());
    return answer(args, url.substr(0, kLongest));
}
PARAMETER(ManagementServer_ConnectionRequestUsername, server_setting, "cwmp, ConnectionRequestUsername val",
          {.at = kInfo / "conn_username"})
PARAMETER(ManagementServer_ConnectionRequestPassword, server_setting, "cwmp, ConnectionRequestPassword val",
          {.at = kInfo / "conn_password", .secret = true})

// Writable, without effect.
PARAMETER(ManagementServer_KickURL, tolerant_constant, "")
PARAMETER(ManagementServer_UDPConnectionRequestAddressNotificationLimit, tolerant_constant, "0")

PARAMETER(ManagementServer_AliasBasedAddressing, constant, "0")
PARAMETER(ManagementServer_SupportedConnReqMethods, constant, "HTTP,STUN,XMPP")

PARAMETER(ManagementServer_UDPConnectionRequestAddress, read_only_option, {.at = kLocalStun / "udpConReqAdd"})
PARAMETER(ManagementServer_NATDetected, read_only_option, {.at = kLocalStun / "NATDetected", .missing = "0"})

PARAMETER(ManagementServer_STUNEnable, stun_setting, "Enable", "0")
PARAMETER(ManagementServer_STUNServerAddress, stun_setting, "STUNSAdd", "")
PARAMETER(ManagementServer_STUNServerPort, stun_setting, "STUNSPort", "3478")
PARAMETER(ManagementServer_STUNUsername, stun_setting, "STUNUsername", "")
PARAMETER(ManagementServer_STUNPassword, stun_setting, "STUNPassword", "", true)

namespace {

std::optional<std::string> the_connection(const char* value) {
    return std::strcmp(value, kXmppConnection) == 0 ? std::optional<std::string>(value) : std::nullopt;
}

// A bound that is not stored counts as 0 here, whatever its GET answers.
std::int64_t stored_bound(const char* name) {
    return std::strtoll(read_option(kStun / name).value_or("0").c_str(), nullptr, 10);
}

std::int64_t new_bound(int op, Arguments args) {
    const char* value = PassArguments(op, args).text();
    return value != nullptr ? std::strtoll(value, nullptr, 10) : 0;
}

}  // namespace

HANDLER(ManagementServer_STUNMaximumKeepAlivePeriod) {
    if (op != CWMP_OP_GET && new_bound(op, args) < stored_bound("MinKeepPeriod")) return kRefused;
    return stun_setting(op, args, "MaxKeepPeriod", "-1");
}
HANDLER(ManagementServer_STUNMinimumKeepAlivePeriod) {
    if (op != CWMP_OP_GET && new_bound(op, args) > stored_bound("MaxKeepPeriod")) return kRefused;
    return stun_setting(op, args, "MinKeepPeriod", "10");
}

PARAMETER(ManagementServer_ConnReqXMPPConnection, option, {.missing = kXmppConnection, .accepts = the_connection})
PARAMETER(ManagementServer_ConnReqAllowedJabberIDs, option,
          {.at = kXmpp / "allowed_id", .accepts = at_most<512>, .apply = CWMP_APPLY_XMPP})
FORWARD(ManagementServer_ConnReqJabberID, XMPP_Connection_JabberID)

// InternetGatewayDevice.WANDevice.{i}.WANConnectionDevice.{i}.WANPPPConnection.{i}.
#include "core/refusal.h"
#include "core/table.h"
#include "core/text.h"
#include "cwmp/platform.h"
#include "cwmp/wan.h"
#include "handlers/blocks/command_line.h"
#include "handlers/blocks/option.h"
#include "handlers/blocks/staged.h"
#include "handlers/wan/connection.h"
#include "platform/check_script.h"
#include "platform/link_commands.h"

using namespace cwmp;
using namespace cwmp::wan;

namespace {

constexpr OptionPath kWanType{"network_sync", "wan", "wan_type"};
constexpr Section kAccount{"network", "internet"};

// The account stands in three places, which always change together.
int account(int op, Arguments args, const Option& parameter) {
    if (op == CWMP_OP_GET) return read_only_option(op, args, parameter);
    return change(op, args, [&](const SetArguments& set) {
        for (const Section& place : {kAccount, Section{"network_sync", "internet"}, Section{"protocol", "pppoe"}}) {
            if (!write_option(place / parameter.at.option, set.value())) return kRefused;
        }
        set.raise(CWMP_APPLY_WAN);
        return kDone;
    });
}

}  // namespace

HANDLER(WANDevice_WANConnectionDevice_WANPPPConnection_Enable) {
    if (op != CWMP_OP_GET) return staged(op, args, {CWMP_STAGED_PPPOE, CWMP_PPPOE_ENABLE});
    const auto type = read_option(kWanType);
    if (!type) return REFUSE(" get pppoe enable error\n\n");
    return answer(args, *type == "pppoe" ? "1" : "0");
}

PARAMETER(WANDevice_WANConnectionDevice_WANPPPConnection_Username, account, {.at = kAccount / "username"})
PARAMETER(WANDevice_WANConnectionDevice_WANPPPConnection_Password, account,
          {.at = kAccount / "password", .secret = true})

HANDLER(WANDevice_WANConnectionDevice_WANPPPConnection_DNSServers) {
    if (op != CWMP_OP_GET) return staged(op, args, {CWMP_STAGED_PPPOE, CWMP_PPPOE_DNS_SERVERS});
    const auto servers = ppp_name_servers();
    return servers ? answer(args, *servers) : kRefused;
}

PARAMETER(WANDevice_WANConnectionDevice_WANPPPConnection_ConnectionStatus, connection_status, "internet",
          "Failed to get wan  status\n\n")

READ_ONLY(WANDevice_WANConnectionDevice_WANPPPConnection_Uptime) {
    const auto command = formatted(kUptimeOf, "internet");
    const std::string line = first_line({command.c_str(), kLongLine, "Failed to get pppoe uptime\n\n"}).value_or("");
    std::size_t position = 0;
    return get.answer(leading_digits(std::string(next_word(line, position))));
}

PARAMETER(WANDevice_WANConnectionDevice_WANPPPConnection_CurrentMRUSize, read_only_option, {.at = kAccount / "mru"})

namespace {

struct Transport {
    char type[6];
    char word[6];
};

constexpr Transport kTransports[] = {{"pppoe", "PPPoE"}, {"l2tp", "L2TP"}, {"pptp", "PPTP"}, {"pppoa", "PPPoA"}};

const char* transport_word(const OptionPath& at) {
    const auto* transport = row_with(kTransports, &Transport::type, read_option(at).value_or(""));
    return transport != nullptr ? transport->word : "";
}

}  // namespace

READ_ONLY(WANDevice_WANConnectionDevice_WANPPPConnection_TransportType) {
    const bool dialled = *transport_word(kWanType) != '\0';
    return get.answer(dialled ? transport_word({"network_sync", "internet", "proto"}) : "");
}

int GetPPPoE_internet_info(int op, va_list args, const char* field) {
    if (op != CWMP_OP_GET) return kRefused;
    refresh(formatted("%s pppoe_infoUpdate ", kCheckScript));
    const auto known = read_option(Section{"check", "pppoe"} / field, kScratchStore);
    return answer(args, known.value_or(""));
}

PARAMETER(WANDevice_WANConnectionDevice_WANPPPConnection_ExternalIPAddress, GetPPPoE_internet_info, "ip")
PARAMETER(WANDevice_WANConnectionDevice_WANPPPConnection_DefaultGateway, GetPPPoE_internet_info, "gateway")
PARAMETER(WANDevice_WANConnectionDevice_WANPPPConnection_MACAddress, GetPPPoE_internet_info, "mac")

namespace {

int ppp_counter(int op, Arguments args, const char* counter) {
    static constexpr const char* kInterfaces[3] = {"pppoe-internet", "br-mg", ""};
    return get_TotalBytesAndPackets_by_name(op, args, kInterfaces, counter);
}

}  // namespace

PARAMETER(WANDevice_WANConnectionDevice_WANPPPConnection_Stats_EthernetBytesSent, ppp_counter, "TotalBytesSent")
PARAMETER(WANDevice_WANConnectionDevice_WANPPPConnection_Stats_EthernetBytesReceived, ppp_counter, "TotalBytesReceived")
PARAMETER(WANDevice_WANConnectionDevice_WANPPPConnection_Stats_EthernetPacketsSent, ppp_counter, "TotalPacketsSent")
PARAMETER(WANDevice_WANConnectionDevice_WANPPPConnection_Stats_EthernetPacketsReceived, ppp_counter,
          "TotalPacketsReceived")
PARAMETER(WANDevice_WANConnectionDevice_WANPPPConnection_Stats_EthernetErrorsSent, ppp_counter, "TotalErrorsSent")
PARAMETER(WANDevice_WANConnectionDevice_WANPPPConnection_Stats_EthernetErrorsReceived, ppp_counter,
          "TotalErrorsReceived")

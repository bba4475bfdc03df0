// The name servers of the WAN connections: set for a static WAN, otherwise learned.
#include <cstdio>

#include "config/store.h"
#include "core/command.h"
#include "core/refusal.h"
#include "core/text.h"
#include "cwmp/platform.h"
#include "cwmp/wan.h"
#include "handlers/wan/connection.h"

namespace cwmp::wan {

namespace {

constexpr const char* kMissing = "0.0.0.0";
constexpr Section kWan{"network_sync", "wan"};
constexpr Section kStatic{"protocol", "static"};

std::optional<std::string> server_of(const std::string& line) {
    char keyword[21];
    char address[21];
    if (!contains(line, "nameserver")) return std::nullopt;
    if (std::sscanf(line.c_str(), "%20s%20s", keyword, address) != 2) return std::nullopt;
    return address;
}

std::string pair_of(const std::string& primary, const std::string& secondary) { return primary + ',' + secondary; }

std::optional<std::string> learned_servers(Caller caller) {
    Command pipe("cat /tmp/resolv.conf");
    if (!pipe) return no_value(refuse(caller, kError, "Failed to get dns_server\n"));
    std::string servers[2] = {kMissing, kMissing};
    std::size_t found = 0;
    while (found < 2) {
        const auto line = pipe.line();
        if (!line) break;
        if (auto server = server_of(*line)) servers[found++] = std::move(*server);
    }
    return pair_of(servers[0], servers[1]);
}

std::optional<std::string> fixed_servers(Caller caller) {
    const auto primary = read_option(kStatic / "pri_dns");
    if (!primary) return no_value(refuse(caller, kError, " get dns from proto  error\n"));
    return pair_of(*primary, read_option(kStatic / "snd_dns").value_or(kMissing));
}

}  // namespace

std::optional<std::string> ip_name_servers(const int* locate) {
    constexpr const char* kFunction = "_get_wanIPconnection_dnsservers";
    constexpr const char* kWhileDown = "0.0.0.0,";
    const int number = connection_of(locate);
    if (number == 0) return no_value(refuse({kFunction, __LINE__}, kError, " fail to get locate\n\n"));
    if (number == 1 && check_br_wan_status() != 0) {
        log_event({kFunction, __LINE__}, kError, "br-wan is not up\n\n");
        return kWhileDown;
    }
    if (number == 2 && check_br_mg_status() != 0) {
        log_event({kFunction, __LINE__}, kError, "br-mg is not up\n\n");
        return kWhileDown;
    }
    const bool fixed = read_option(kWan / "proto") == "static";
    return fixed ? fixed_servers({kFunction, __LINE__}) : learned_servers({kFunction, __LINE__});
}

std::optional<std::string> ppp_name_servers() {
    if (read_option(kWan / "wan_type") != "pppoe") return "";
    return learned_servers({"_get_wanPPPconnection_dnsservers", __LINE__});
}

}  // namespace cwmp::wan

int _get_wanIPconnection_dnsservers(const int* locate, char* value) {
    const auto servers = cwmp::wan::ip_name_servers(locate);
    return servers ? cwmp::answer_in(value, *servers) : cwmp::kRefused;
}

int _get_wanPPPconnection_dnsservers(char* value) {
    const auto servers = cwmp::wan::ppp_name_servers();
    return servers ? cwmp::answer_in(value, *servers) : cwmp::kRefused;
}

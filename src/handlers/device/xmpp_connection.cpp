// Device.XMPP.: the one connection for connection requests, and its one server.
#include <cstring>

#include "core/command.h"
#include "core/file.h"
#include "handlers/blocks/option.h"

using namespace cwmp;

namespace {

constexpr Section kConnection = {"cwmp", "xmpp_conn"};
constexpr Section kServer = {"cwmp", "xmpp_srv"};

int setting(int op, Arguments args, const OptionPath& at, const char* missing, Check accepts, bool secret = false) {
    return option(op, args,
                  {.at = at, .missing = missing, .accepts = accepts, .apply = CWMP_APPLY_XMPP, .secret = secret});
}

// What the agent's XMPP client wrote last.
int client_status(int op, Arguments args, const char* file, const char* missing) {
    constexpr std::size_t kLongest = 19;
    if (op != CWMP_OP_GET) return kRefused;
    return answer(args, first_line_of_file(file, kLongest).value_or(missing));
}

std::optional<std::string> connect_algorithm(const char* value) {
    if (std::strcmp(value, "DNS-SRV") != 0 && std::strcmp(value, "ServerTable") != 0) return std::nullopt;
    return value;
}

std::string jabber_id() {
    const auto user = read_option(kConnection / "username").value_or("");
    const auto domain = read_option(kConnection / "domain").value_or("");
    const auto resource = read_option(kConnection / "resource").value_or("");
    if (user.empty() || domain.empty() || resource.empty()) return "";
    return user + "@" + domain + "/" + resource;
}

}  // namespace

PARAMETER(XMPP_ConnectionNumberOfEntries, constant, "1")

PARAMETER(XMPP_Connection_Enable, setting, kConnection / "enable", "0", boolean)
PARAMETER(XMPP_Connection_Username, setting, kConnection / "username", "", at_most<256>)
PARAMETER(XMPP_Connection_Password, setting, kConnection / "password", "", at_most<256>, true)
PARAMETER(XMPP_Connection_Domain, setting, kConnection / "domain", "", at_most<64>)
PARAMETER(XMPP_Connection_Resource, setting, kConnection / "resource", "", at_most<64>)
PARAMETER(XMPP_Connection_UseTLS, setting, kConnection / "use_tls", "0", boolean)

PARAMETER(XMPP_Connection_ServerConnectAlgorithm, setting, kConnection / "conn_algo", "DNS-SRV", connect_algorithm)
PARAMETER(XMPP_Connection_KeepAliveInterval, setting, kConnection / "keep_alive_int", "-1", number<-1, INT_MAX>)
PARAMETER(XMPP_Connection_ServerConnectAttempts, setting, kConnection / "conn_attempt", "16", wrapping_number)
PARAMETER(XMPP_Connection_ServerRetryInitialInterval, setting, kConnection / "retry_init_int", "60", number<1, 65535>)
PARAMETER(XMPP_Connection_ServerRetryIntervalMultiplier, setting, kConnection / "retry_int_multi", "2000",
          number<1000, 65535>)
PARAMETER(XMPP_Connection_ServerRetryMaxInterval, setting, kConnection / "retry_max_int", "30720", number<1, UINT_MAX>)

READ_ONLY(XMPP_Connection_JabberID) { return get.answer(jabber_id()); }

PARAMETER(XMPP_Connection_Status, client_status, "/tmp/xmpp/Status", "Disabled")
PARAMETER(XMPP_Connection_TLSEstablished, client_status, "/tmp/xmpp/TLSEstablished", "0")

READ_ONLY(XMPP_Connection_LastChangeDate) {
    constexpr std::size_t kLongest = 63;
    // The client puts a blank between date and time; the file itself is mended.
    refresh("sed -i 's/ /T/g' /tmp/xmpp/LastChangeTime");
    const auto date = first_line_of_file("/tmp/xmpp/LastChangeTime", kLongest);
    return get.answer(date.value_or("1997-07-01T00:00:00"));
}

PARAMETER(XMPP_Connection_ServerNumberOfEntries, constant, "1")

PARAMETER(XMPP_Connection_Server_Enable, setting, kServer / "enable", "0", boolean)
PARAMETER(XMPP_Connection_Server_Priority, setting, kServer / "priority", "", number<0, 65535>)
PARAMETER(XMPP_Connection_Server_Weight, setting, kServer / "weight", "", number<-1, 65535>)
PARAMETER(XMPP_Connection_Server_ServerAddress, setting, kServer / "address", "", at_most<256>)
PARAMETER(XMPP_Connection_Server_Port, setting, kServer / "port", "5222", number<0, 65535>)

// The client counts no messages.
PARAMETER(XMPP_Connection_Stats_ReceivedMessages, constant, "")
PARAMETER(XMPP_Connection_Stats_TransmittedMessages, constant, "")
PARAMETER(XMPP_Connection_Stats_ReceivedErrorMessages, constant, "")
PARAMETER(XMPP_Connection_Stats_TransmittedErrorMessages, constant, "")

// Device.XMPP.: the one connection for connection requests, and its one server.
#include <cstring>

#include "core/command.h"
#include "core/file.h"
#include "handlers/blocks/option.h"

using namespace cwmp;

namespace {

constexpr Section kConnection = {"cwmp", "xmpp_conn"};
constexpr Section kServer = {"cwmp", "xmpp_srv"};

int setting(int op, Arguments args, const OptionPath& at, const char* missing, Check accepts,
            bool secret = false) {
    return option(
        op, args,
        {.at = at, .missing = missing, .accepts = accepts, .apply = CWMP_APPLY_XMPP, .secret = secret});
}

// What the agent's XMPP client wrote last.
int client_status(int op, Arguments args, const char* file, const char* missing) {
    constexpr std::size_t kLongest = 19;
    if (op != CWMP_OP_GET) return kRefused;
    return GetArguments(args).answer(first_line_of_file(file, kLongest).value_or(missing));
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

HANDLER(XMPP_ConnectionNumberOfEntries) { return constant(op, args, "1"); }

HANDLER(XMPP_Connection_Enable) { return setting(op, args, kConnection / "enable", "0", boolean); }
HANDLER(XMPP_Connection_Username) { return setting(op, args, kConnection / "username", "", at_most<256>); }
HANDLER(XMPP_Connection_Password) {
    return setting(op, args, kConnection / "password", "", at_most<256>, true);
}
HANDLER(XMPP_Connection_Domain) { return setting(op, args, kConnection / "domain", "", at_most<64>); }
HANDLER(XMPP_Connection_Resource) { return setting(op, args, kConnection / "resource", "", at_most<64>); }
HANDLER(XMPP_Connection_UseTLS) { return setting(op, args, kConnection / "use_tls", "0", boolean); }

HANDLER(XMPP_Connection_ServerConnectAlgorithm) {
    return setting(op, args, kConnection / "conn_algo", "DNS-SRV", connect_algorithm);
}
HANDLER(XMPP_Connection_KeepAliveInterval) {
    return setting(op, args, kConnection / "keep_alive_int", "-1", number<-1, INT_MAX>);
}
HANDLER(XMPP_Connection_ServerConnectAttempts) {
    return setting(op, args, kConnection / "conn_attempt", "16", wrapping_number);
}
HANDLER(XMPP_Connection_ServerRetryInitialInterval) {
    return setting(op, args, kConnection / "retry_init_int", "60", number<1, 65535>);
}
HANDLER(XMPP_Connection_ServerRetryIntervalMultiplier) {
    return setting(op, args, kConnection / "retry_int_multi", "2000", number<1000, 65535>);
}
HANDLER(XMPP_Connection_ServerRetryMaxInterval) {
    return setting(op, args, kConnection / "retry_max_int", "30720", number<1, UINT_MAX>);
}

HANDLER(XMPP_Connection_JabberID) {
    return op == CWMP_OP_GET ? GetArguments(args).answer(jabber_id()) : kRefused;
}

HANDLER(XMPP_Connection_Status) { return client_status(op, args, "/tmp/xmpp/Status", "Disabled"); }
HANDLER(XMPP_Connection_TLSEstablished) { return client_status(op, args, "/tmp/xmpp/TLSEstablished", "0"); }

HANDLER(XMPP_Connection_LastChangeDate) {
    constexpr std::size_t kLongest = 63;
    if (op != CWMP_OP_GET) return kRefused;
    // The client puts a blank between date and time; the file itself is mended.
    refresh("sed -i 's/ /T/g' /tmp/xmpp/LastChangeTime");
    const auto date = first_line_of_file("/tmp/xmpp/LastChangeTime", kLongest);
    return GetArguments(args).answer(date.value_or("1997-07-01T00:00:00"));
}

HANDLER(XMPP_Connection_ServerNumberOfEntries) { return constant(op, args, "1"); }

HANDLER(XMPP_Connection_Server_Enable) { return setting(op, args, kServer / "enable", "0", boolean); }
HANDLER(XMPP_Connection_Server_Priority) {
    return setting(op, args, kServer / "priority", "", number<0, 65535>);
}
HANDLER(XMPP_Connection_Server_Weight) {
    return setting(op, args, kServer / "weight", "", number<-1, 65535>);
}
HANDLER(XMPP_Connection_Server_ServerAddress) {
    return setting(op, args, kServer / "address", "", at_most<256>);
}
HANDLER(XMPP_Connection_Server_Port) { return setting(op, args, kServer / "port", "5222", number<0, 65535>); }

// The client counts no messages.
HANDLER(XMPP_Connection_Stats_ReceivedMessages) { return constant(op, args, ""); }
HANDLER(XMPP_Connection_Stats_TransmittedMessages) { return constant(op, args, ""); }
HANDLER(XMPP_Connection_Stats_ReceivedErrorMessages) { return constant(op, args, ""); }
HANDLER(XMPP_Connection_Stats_TransmittedErrorMessages) { return constant(op, args, ""); }

#include "handlers/wifi/client_table.h"

#include <algorithm>
#include <cstring>

#include "core/refusal.h"
#include "core/text.h"

namespace cwmp {
namespace {

const InterfaceField* choose(const NetworkPair& networks, int number) {
    if (number == 1) return &networks.first;
    if (number == 2) return &networks.second;
    return nullptr;
}

}  // namespace

void deepen(int* locate) {
    locate[2] = locate[1];
    locate[1] = locate[0];
    locate[0] = 1;
}

int host_count() { return std::max(0, row_count(kHosts).value_or(0)); }

std::vector<int> clients_of(InterfaceField interface, int hosts) {
    return find_rows(kHosts, hosts, {{"lay2if", current_interface(interface)}});
}

std::optional<int> find_client(InterfaceField interface, int hosts, int index) {
    return pick_row(clients_of(interface, hosts), index);
}

int answer_client(const GetArguments& get, std::optional<int> client, const char* option) {
    return get.answer(client ? read_row(kHosts, *client, option).value_or("") : "");
}

int client_option(int op, Arguments args, const NetworkPair& networks, const char* option, Caller caller) {
    if (op != CWMP_OP_GET || option == nullptr) return kRefused;
    const GetArguments get(args);
    int* locate = get.locate();
    deepen(locate);
    if (locate[1] == 0 || locate[2] == 0) return refuse(caller, kError, "locate error\n");
    const int hosts = host_count();
    if (hosts == 0) return get.answer("");
    if (hosts < locate[2]) return refuse(caller, kError, "locate[2] is wrong\n");
    const auto* interface = choose(networks, locate[1]);
    if (interface == nullptr) return kRefused;
    const auto client = find_client(*interface, hosts, locate[2]);
    if (!client) return kRefused;
    const bool is_state = std::strcmp(option, "authentication_state") == 0;
    return get.answer(read_row(kHosts, *client, option).value_or(is_state ? "0" : ""));
}

int client_count(int op, Arguments args, const NetworkPair& networks) {
    if (op != CWMP_OP_GET) return kRefused;
    const GetArguments get(args);
    const int* locate = get.locate();
    const auto* interface = choose(networks, locate[1] == 0 ? locate[0] : locate[1]);
    if (interface == nullptr) return kRefused;
    return get.answer(decimal(std::ssize(clients_of(*interface, host_count()))));
}

}  // namespace cwmp

// The wireless clients, as rows of the table of hosts. Messages are logged under the caller's name.
#pragma once

#include "config/numbered_rows.h"
#include "core/handler.h"
#include "core/log.h"
#include "cwmp/wireless.h"
#include "handlers/wifi/selection.h"

namespace cwmp {

// The number of all hosts; 0 when the table tells none.
int host_count();
// The clients on an interface, as row numbers in their order.
std::vector<int> clients_of(InterfaceField interface, int hosts);
// The index-th of them.
std::optional<int> find_client(InterfaceField interface, int hosts, int index);

// Which networks an object numbers as 1 and 2.
struct NetworkPair {
    InterfaceField first;
    InterfaceField second;
};
inline constexpr NetworkPair kMainPair{&cwmp_interface_info::wifi_2_4G, &cwmp_interface_info::wifi_5G};
inline constexpr NetworkPair kGuestPair{&cwmp_interface_info::guest_2_4G, &cwmp_interface_info::guest_5G};

// The address of a client or another option, empty when there is no such client or option.
int answer_client(const GetArguments& get, std::optional<int> client, const char* option);

// GET of one option of a client. locate holds network and client, and becomes {1, network, client}.
int client_option(int op, Arguments args, const NetworkPair& networks, const char* option,
                  Caller caller = Caller::here());

// The same of either pair, under the exported names that the logs know.
inline constexpr auto main_client = WLANConfiguration_AssociatedDevice_LinkInfo_Get;
inline constexpr auto guest_client = MultiSSID_AssociatedDevice_LinkInfo_Get;

// GET of the number of clients on the network of the pair that locate[1], or locate[0] alone, selects.
int client_count(int op, Arguments args, const NetworkPair& networks);

// Instance numbers of a shorter path, moved to where the deeper one has them.
void deepen(int* locate);

}  // namespace cwmp

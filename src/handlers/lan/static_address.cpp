// Device.DHCPv4.Server.Pool.{i}.StaticAddress.{i}.: the parameters of a static address.
#include "core/addresses.h"
#include "core/handler.h"
#include "core/refusal.h"
#include "cwmp/value_checks.h"
#include "handlers/lan/reservation.h"

using namespace cwmp;

namespace {

constexpr const char* kOn = "on";
constexpr const char* kOff = "off";

Reservation reservation_at(const int* locate, Caller caller = Caller::here()) { return {locate[1], caller}; }

bool is_unset(const std::string& text, const char* none) { return text.empty() || text == none; }

}  // namespace

HANDLER(DHCPv4_Server_Pool_StaticAddress_Enable) {
    if (op == CWMP_OP_GET) {
        const GetArguments get(args);
        const auto enable = reservation_at(get.locate()).stored("enable");
        return enable ? get.answer(*enable == kOn ? "1" : "0") : kRefused;
    }
    const SetArguments set(op, args);
    if (set.value() == nullptr) return kRefused;
    const Reservation entry = reservation_at(set.locate());
    const auto mac = entry.read("mac");
    const auto host = mac ? entry.read("ip") : std::nullopt;
    if (!host || !entry.write("enable", std::string_view(set.value()) == "1" ? kOn : kOff)) return kRefused;
    if (*mac != kNoMac && *host != kNoHost) set.raise(CWMP_APPLY_DHCP_SERVER);
    return kDone;
}

HANDLER(DHCPv4_Server_Pool_StaticAddress_Chaddr) {
    if (op == CWMP_OP_GET) {
        const GetArguments get(args);
        const auto mac = reservation_at(get.locate()).stored("mac");
        if (!mac) return kRefused;
        return get.answer(is_unset(*mac, kNoMac) ? "" : *mac);
    }
    const SetArguments set(op, args);
    if (set.value() == nullptr) return kRefused;
    if (libutil_netChkStrMacAddr(set.value()) != 1 || libutil_netChkLegalMacAddr(set.value()) != 1)
        return REFUSE("failed to set invalid mac %s\n", set.value());
    const std::string mac = canonical_mac(set.value());
    const Reservation entry = reservation_at(set.locate());
    const auto current = entry.read("mac");
    if (!current) return kRefused;
    if (entry.is_taken("mac", mac, {},
                       [](const std::string& text, const Lan&) { return canonical_mac(text); }))
        return REFUSE("failed, mac is already existed\n");
    if (*current == mac) {
        LOG_ERROR("option mac already set\n");
        return kDone;
    }
    if (!entry.write("mac", mac)) return kRefused;
    const auto host = entry.read("ip");
    const auto enable = host ? entry.read("enable") : std::nullopt;
    if (!enable) return kRefused;
    if (*host != kNoHost && *enable != kOff) set.raise(CWMP_APPLY_DHCP_SERVER);
    return kDone;
}

namespace {

// Other spellings than the canonical one would hide an address that is taken.
bool is_host_address(const char* text) {
    return libutil_netChkDotIpAddr(text) == 1 && libutil_netChkLegalIpAddr(text) == 1 &&
           checkValidIP(text) == 1;
}

bool belongs_in(const Lan& lan, const char* address) {
    return address_number(address) != address_number(lan.address.c_str()) &&
           libutil_netChkSameSubnet(address, nullptr, lan.address.c_str(), lan.mask.c_str()) == 1;
}

}  // namespace

HANDLER(DHCPv4_Server_Pool_StaticAddress_Yiaddr) {
    if (op == CWMP_OP_GET) {
        const GetArguments get(args);
        const auto host = reservation_at(get.locate()).stored("ip");
        if (!host) return kRefused;
        if (is_unset(*host, kNoHost)) return get.answer("");
        const auto lan = read_lan(Caller::here());
        return lan ? get.answer(lan->complete(*host)) : kRefused;
    }
    const SetArguments set(op, args);
    if (set.value() == nullptr) return kRefused;
    const std::string address = set.value();
    if (!is_host_address(set.value())) return REFUSE("failed to set invalid ip %s\n", set.value());
    const Reservation entry = reservation_at(set.locate());
    const auto current = entry.read("ip");
    const auto lan = current ? read_lan(Caller::here()) : std::nullopt;
    if (!lan) return kRefused;
    if (!belongs_in(*lan, set.value()))
        return REFUSE("faild, %s is not in lan %s mask %s subnet\n", set.value(), lan->address.c_str(),
                      lan->mask.c_str());
    if (entry.is_taken("ip", address, *lan,
                       [](const std::string& text, const Lan& network) { return network.complete(text); }))
        return REFUSE("failed, ip is already existed\n");
    if (lan->complete(*current) == address) {
        LOG_ERROR("option ip already set\n");
        return kDone;
    }
    if (!entry.write("ip", host_part(set.value(), lan->mask.c_str()))) return kRefused;
    const auto mac = entry.read("mac");
    const auto enable = mac ? entry.read("enable") : std::nullopt;
    if (!enable) return kRefused;
    if (*mac != kNoMac && *enable != kOff) set.raise(CWMP_APPLY_DHCP_SERVER);
    return kDone;
}

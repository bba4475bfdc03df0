// Device.DHCPv4.Server.Pool.{i}.StaticAddress.{i}.: the parameters of a static address.
#include <algorithm>

#include "core/addresses.h"
#include "core/handler.h"
#include "core/refusal.h"
#include "cwmp/value_checks.h"
#include "handlers/blocks/lan_network.h"
#include "handlers/lan/reservation.h"

using namespace cwmp;

namespace {

constexpr const char* kOn = "on";
constexpr const char* kOff = "off";

using Text = std::optional<std::string>;
// The MAC or the IP address that a SET gives.
struct Address {
    const char* option;
    std::string full;
    std::string text;     // to store
    std::string current;  // in force, as it is compared with the full one
    Lan lan;
    std::string (*full_form)(const std::string& stored, const Lan& lan);
    const char* other;  // the option of the other address, and what it holds while it is not set
    const char* other_unset;
};

// The static address that a path names. What fails is logged as an event of the caller.
class Reservation {
  public:
    explicit Reservation(const int* locate, Caller caller = Caller::here())
        : section_(kReservations, locate[1]), name_(section_.name().c_str()), caller_(caller) {}

    // For GET: an option that the section lacks reads empty; nothing when there is no such section.
    Text stored(const char* option) const {
        if (!section_) return missing(option);
        return section_.value(option).value_or("");
    }
    Text read(const char* option) const {
        const Text text = section_.value(option);
        return text ? text : missing(option);
    }
    bool write(const char* option, const std::string& value) const {
        if (section_.write(option, value)) return true;
        refuse(caller_, kError, "failed to set option %s to section %s\n", option, name_);
        return false;
    }

    int set(const SetArguments& set, const Address& address) const {
        if (is_taken(address)) return refuse(caller_, kError, "failed, %s is already existed\n", address.option);
        if (address.current == address.full) {
            log_event(caller_, kError, "option %s already set\n", address.option);
            return kDone;
        }
        if (!write(address.option, address.text)) return kRefused;
        const Text other = read(address.other);
        const Text enable = other ? read("enable") : std::nullopt;
        if (!enable) return kRefused;
        if (*other != address.other_unset && *enable != kOff) set.raise(CWMP_APPLY_DHCP_SERVER);
        return kDone;
    }

  private:
    Text missing(const char* option) const {
        return no_value(refuse(caller_, kError, "failed to get option %s from section %s\n", option, name_));
    }

    // Whether another section, of any type, has this address. One without the option, and a package that cannot
    // be read, count as a conflict.
    bool is_taken(const Address& address) const {
        UciContext context(kLiveStore);
        if (!context || !context.load(kReservations.package)) return true;
        const auto sections = context.sections(nullptr);
        return std::any_of(sections.begin(), sections.end(), [&](uci_section* section) {
            const std::string other = UciContext::name(section);
            if (other == name_) return false;
            const Text text = context.value(section, address.option);
            if (!text) {
                log_event(caller_, kError, "failed to find option %s in section %s\n", address.option, other.c_str());
                return true;
            }
            const bool same = address.full_form(*text, address.lan) == address.full;
            if (same)
                log_event(caller_, kError, "failed, %s %s is already in section %s\n", address.option,
                          address.full.c_str(), other.c_str());
            return same;
        });
    }

    NumberedSection section_;
    const char* name_;
    Caller caller_;
};

int set_enable(const SetArguments& set, Caller caller) {
    const Reservation entry(set.locate(), caller);
    const auto mac = entry.read("mac");
    const auto host = mac ? entry.read("ip") : std::nullopt;
    if (!host || !entry.write("enable", std::string_view(set.value()) == "1" ? kOn : kOff)) return kRefused;
    if (*mac != kNoMac && *host != kNoHost) set.raise(CWMP_APPLY_DHCP_SERVER);
    return kDone;
}

int set_mac(const SetArguments& set, Caller caller) {
    if (libutil_netChkStrMacAddr(set.value()) != 1 || libutil_netChkLegalMacAddr(set.value()) != 1)
        return refuse(caller, kError, "failed to set invalid mac %s\n", set.value());
    const std::string mac = canonical_mac(set.value());
    const Reservation entry(set.locate(), caller);
    const auto current = entry.read("mac");
    if (!current) return kRefused;
    return entry.set(set, {.option = "mac",
                           .full = mac,
                           .text = mac,
                           .current = *current,
                           .lan = {},
                           .full_form = [](const std::string& text, const Lan&) { return canonical_mac(text); },
                           .other = "ip",
                           .other_unset = kNoHost});
}

// Other spellings than the canonical one would hide an address that is taken.
bool is_host_address(const char* text) {
    return libutil_netChkDotIpAddr(text) == 1 && libutil_netChkLegalIpAddr(text) == 1 && checkValidIP(text) == 1;
}

int set_ip(const SetArguments& set, Caller caller) {
    if (!is_host_address(set.value())) return refuse(caller, kError, "failed to set invalid ip %s\n", set.value());
    const Reservation entry(set.locate(), caller);
    const auto current = entry.read("ip");
    const auto lan = current ? read_lan(caller) : std::nullopt;
    if (!lan) return kRefused;
    if (!lan->has_host(set.value()))
        return refuse(caller, kError, "faild, %s is not in lan %s mask %s subnet\n", set.value(), lan->address.c_str(),
                      lan->mask.c_str());
    return entry.set(set,
                     {.option = "ip",
                      .full = set.value(),
                      .text = host_part(set.value(), lan->mask.c_str()),
                      .current = lan->complete(*current),
                      .lan = *lan,
                      .full_form = [](const std::string& text, const Lan& network) { return network.complete(text); },
                      .other = "mac",
                      .other_unset = kNoMac});
}

}  // namespace

WRITABLE(DHCPv4_Server_Pool_StaticAddress_Enable, set_enable) {
    const auto enable = Reservation(get.locate()).stored("enable");
    return enable ? get.answer(*enable == kOn ? "1" : "0") : kRefused;
}

WRITABLE(DHCPv4_Server_Pool_StaticAddress_Chaddr, set_mac) {
    const auto mac = Reservation(get.locate()).stored("mac");
    return mac == kNoMac ? get.answer("") : get.answer(mac);
}

WRITABLE(DHCPv4_Server_Pool_StaticAddress_Yiaddr, set_ip) {
    const auto host = Reservation(get.locate()).stored("ip");
    if (!host) return kRefused;
    if (host->empty() || *host == kNoHost) return get.answer("");
    const auto lan = read_lan(Caller::here());
    return lan ? get.answer(lan->complete(*host)) : kRefused;
}

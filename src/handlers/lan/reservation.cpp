#include "handlers/lan/reservation.h"

#include <algorithm>

#include "config/device_profile.h"
#include "config/store.h"
#include "core/addresses.h"
#include "core/refusal.h"
#include "core/text.h"

namespace cwmp {
namespace {

// As many as the mask of numbers holds.
constexpr int kMostReservations = 64;

int most_reservations() {
    char text[16] = "";
    uci_get_profile("dhcps", "max_rsvd_host", text, sizeof text);
    const int most = decimal_prefix(text);
    return most < 1 || most > kMostReservations ? kMostReservations : most;
}

}  // namespace

std::string Lan::complete(const std::string& host) const {
    return host_address(address.c_str(), mask.c_str(), host);
}

std::optional<Lan> read_lan(Caller caller) {
    constexpr Section kLan{"network", "lan"};
    auto address = read_option(kLan / "ipaddr");
    if (!address) {
        refuse(caller, kError, "failed to get lan ip\n");
        return std::nullopt;
    }
    auto mask = read_option(kLan / "netmask");
    if (!mask) {
        refuse(caller, kError, "failed to get lan mask\n");
        return std::nullopt;
    }
    return Lan{std::move(*address), std::move(*mask)};
}

std::optional<std::string> Reservation::stored(const char* option) const {
    UciContext context(kLiveStore);
    uci_section* section = context && context.load(kReservations) ? context.section(name()) : nullptr;
    if (section == nullptr) {
        refuse(caller_, kError, "failed to get option %s from section %s\n", option, name());
        return std::nullopt;
    }
    return context.value(section, option).value_or("");
}

std::optional<std::string> Reservation::read(const char* option) const {
    auto text = read_option({kReservations, name(), option});
    if (!text) refuse(caller_, kError, "failed to get option %s from section %s\n", option, name());
    return text;
}

bool Reservation::write(const char* option, const std::string& value) const {
    const bool done = write_option({kReservations, name(), option}, value);
    if (!done) refuse(caller_, kError, "failed to set option %s to section %s\n", option, name());
    return done;
}

bool Reservation::is_taken(const char* option, const std::string& value, const Lan& lan,
                           std::string (*full)(const std::string& text, const Lan& lan)) const {
    UciContext context(kLiveStore);
    if (!context || !context.load(kReservations)) return true;
    const auto sections = context.sections(kReservation);
    return std::any_of(sections.begin(), sections.end(), [&](uci_section* section) {
        const char* other = UciContext::name(section);
        if (name_ == other) return false;
        const auto text = context.value(section, option);
        if (!text) {
            log_event(caller_, kError, "failed to find option %s in section %s\n", option, other);
            return true;
        }
        const bool same = full(*text, lan) == value;
        if (same) {
            log_event(caller_, kError, "failed, %s %s is already in section %s\n", option, value.c_str(),
                      other);
        }
        return same;
    });
}

std::optional<ReservationNumbers> ReservationNumbers::read(Caller caller) {
    UciContext context(kLiveStore);
    if (!context) {
        refuse(caller, kError, "failed to uci_alloc_context\n");
        return std::nullopt;
    }
    if (!context.load(kReservations)) {
        refuse(caller, kError, "failed to uci_load\n");
        return std::nullopt;
    }
    ReservationNumbers numbers;
    numbers.most_ = most_reservations();
    for (const uci_section* section : context.sections(kReservation)) {
        const int number = decimal_prefix(UciContext::name(section));
        if (number < 1 || number > numbers.most_) {
            refuse(caller, kError, "failed to handle unknown section %d\n", number - 1);
            return std::nullopt;
        }
        numbers.add(number);
    }
    return numbers;
}

}  // namespace cwmp

#include "handlers/lan/reservation.h"

#include "config/device_profile.h"
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

std::optional<ReservationNumbers> ReservationNumbers::read(Caller caller) {
    UciContext context(kLiveStore);
    if (!context) return no_value(refuse(caller, kError, "failed to uci_alloc_context\n"));
    if (!context.load(kReservations.package)) return no_value(refuse(caller, kError, "failed to uci_load\n"));
    ReservationNumbers numbers;
    numbers.most_ = most_reservations();
    for (const uci_section* section : context.sections(kReservations.type)) {
        const int number = decimal_prefix(UciContext::name(section));
        if (number < 1 || number > numbers.most_)
            return no_value(refuse(caller, kError, "failed to handle unknown section %d\n", number - 1));
        numbers.add(number);
    }
    return numbers;
}

}  // namespace cwmp

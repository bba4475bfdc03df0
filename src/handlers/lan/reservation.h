// Static addresses of the DHCP server: package dhcp_reservation holds one section of type "reservation" for
// each, named by its instance number. Of the address only the host part is stored, so that it follows the
// LAN.
#pragma once

#include <cstdint>
#include <optional>

#include "core/log.h"
#include "handlers/blocks/numbered_section.h"

namespace cwmp {

inline constexpr SectionKind kReservations{"dhcp_reservation", "reservation"};
// What mac and ip hold while they are not set.
inline constexpr const char* kNoMac = "00:00:00:00:00:00";
inline constexpr const char* kNoHost = "0.0.0.0";

// The instance numbers in use.
class ReservationNumbers {
  public:
    // Nothing, logged, when the package cannot be read or holds a section without a valid number.
    static std::optional<ReservationNumbers> read(Caller caller);

    int most() const { return most_; }
    bool has(int number) const { return number >= 1 && number <= most_ && (used_ >> (number - 1) & 1) != 0; }

  private:
    void add(int number) { used_ |= std::uint64_t{1} << (number - 1); }

    int most_ = 0;
    std::uint64_t used_ = 0;
};

}  // namespace cwmp

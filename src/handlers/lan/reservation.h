// Static addresses of the DHCP server: package dhcp_reservation holds one section of type "reservation" for
// each, named by its instance number. Of the address only the host part is stored, so that it follows the
// LAN.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "config/uci_context.h"
#include "core/log.h"

namespace cwmp {

inline constexpr const char* kReservations = "dhcp_reservation";
inline constexpr const char* kReservation = "reservation";
// What mac and ip hold while they are not set.
inline constexpr const char* kNoMac = "00:00:00:00:00:00";
inline constexpr const char* kNoHost = "0.0.0.0";

// The LAN that host parts are completed with.
struct Lan {
    std::string address;
    std::string mask;

    std::string complete(const std::string& host) const;
};
// Failures are logged.
std::optional<Lan> read_lan(Caller caller);

// One static address. What fails is logged as an event of the caller.
class Reservation {
  public:
    Reservation(int number, Caller caller) : name_(std::to_string(number)), caller_(caller) {}

    const char* name() const { return name_.c_str(); }
    // For GET: an option that the section lacks reads empty; nothing when there is no such section.
    std::optional<std::string> stored(const char* option) const;
    std::optional<std::string> read(const char* option) const;
    bool write(const char* option, const std::string& value) const;
    // Whether another static address has this value; stored texts are compared in the form that full gives
    // them. An entry without the option, and a package that cannot be read, count as a conflict.
    bool is_taken(const char* option, const std::string& value, const Lan& lan,
                  std::string (*full)(const std::string& text, const Lan& lan)) const;

  private:
    std::string name_;
    Caller caller_;
};

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

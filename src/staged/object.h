// What tells the groups of settings apart, and access to their records by option number.
#pragma once

#include <cassert>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

#include "core/log.h"
#include "cwmp/staged_objects.h"

namespace cwmp::staged {

enum class Kind : std::uint8_t { text, enable };

struct Field {
    const char* key = "";      // in the JSON that the check script is handed
    std::uint16_t offset = 0;  // in the record
    std::uint16_t width = 0;   // bytes
    std::uint16_t kept = 0;    // characters of a value
    Kind kind = Kind::text;
};

constexpr Field enable_word(const char* key) {
    return {.key = key, .offset = 0, .width = sizeof(std::int32_t), .kept = 0, .kind = Kind::enable};
}

// The staging and the revert record of a group, of one layout; the last four bytes are the checked marker.
struct Records {
    void* staging;
    void* revert;
    std::uint16_t size;
};
template <typename Layout>
constexpr Records records(Layout& staging, Layout& revert) {
    return {&staging, &revert, sizeof(Layout)};
}

// Why a rule refuses its group, as the engine logs it; null when it does not.
struct Refusal {
    const char* text = nullptr;
    int level = kProgress;

    explicit operator bool() const { return text != nullptr; }
};
inline constexpr Refusal kSilent{""};  // nothing is logged but that the check fails

class Check;
using Rule = Refusal (*)(const Check& group);

struct Object {
    const char* name = "";  // the script's verbs, the revert name and most messages are made of it
    Records records = {};
    std::uint16_t apply = 0;  // the service group that an accepted apply raises
    std::initializer_list<Field> fields = {};
    std::uint8_t json_order[5] = {0, 1, 2, 3, 4};
    int (*pre_revert)(int option, const char* value) = nullptr;
    bool prints = false;                           // what is staged, to standard output, too
    bool true_enables_revert = false;              // not only "1"
    bool restorable = true;                        // by a revert
    bool (*exempt)(const Check& group) = nullptr;  // from its rules, as one that is switched off
    const char* exempted = nullptr;                // logged then
    std::initializer_list<Rule> rules = {};        // asked in this order, up to the first that refuses
    const char* check_passed = nullptr;
    Refusal check_failed = {};                     // logged behind the rule's
    const Object* check_failure_clears = nullptr;  // null: the object itself
    void (*before_apply)(Caller caller) = nullptr;
    const char* apply_rejected = nullptr;  // logged before the common message
    const char* request_failed = nullptr;  // the same, when there was no memory for the request

    int count() const { return static_cast<int>(fields.size()); }
    const Field& field(int option) const {
        assert(option >= 0 && option < count());
        return fields.begin()[option];
    }
    bool is_switch(int option) const { return field(option).kind == Kind::enable; }
};

extern const Object kPppoe, kDhcp, kLan, kWan, kIptv, kVlan;
extern const Object* const kObjects[CWMP_STAGED_OBJECTS];

class Record {
  public:
    static Record staging(const Object& object) { return {object, object.records.staging}; }
    static Record revert(const Object& object) { return {object, object.records.revert}; }

    std::int32_t& enable() const { return *reinterpret_cast<std::int32_t*>(bytes_); }
    std::uint32_t& checked() const {
        return *reinterpret_cast<std::uint32_t*>(bytes_ + object_.records.size - sizeof(std::uint32_t));
    }

    // Never longer than the field, whoever filled the record.
    std::string_view text(int option) const;
    // Up to the first zero byte, in whichever field that stands.
    std::size_t length(int option) const;
    void put_text(int option, std::string_view text) const;
    // The same of any field, that of a switch in digits.
    std::string value(int option) const;
    void put(int option, const std::string& value) const;
    void clear() const;

  private:
    Record(const Object& object, void* bytes) : object_(object), bytes_(static_cast<char*>(bytes)) {}

    const Object& object_;
    char* bytes_;
};

}  // namespace cwmp::staged

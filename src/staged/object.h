// What tells the groups of settings apart, and access to their records by option number.
#pragma once

#include <cstdint>
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

class Check;

struct Event {
    const char* text = "";
    int level = kProgress;
};

inline constexpr int kMostFields = 5;

struct Object {
    const char* name = "";  // the script's verbs, the revert name and most messages are made of it
    void* staging = nullptr;
    void* revert = nullptr;
    std::uint16_t size = 0;   // bytes of a record; the last four are the checked marker
    std::uint16_t apply = 0;  // the service group that an accepted apply raises
    std::uint8_t count = 0;   // of fields
    Field fields[kMostFields] = {};
    std::uint8_t json_order[kMostFields] = {0, 1, 2, 3, 4};
    int (*pre_revert)(int option, const char* value) = nullptr;
    bool (*passes)(const Check&) = nullptr;  // the group's rules
    bool true_enables_revert = false;        // not only "1"
    bool restorable = true;                  // by a revert
    Event check_failed = {};
    const Object* check_failure_clears = nullptr;  // null: the object itself
    void (*before_apply)(Caller caller) = nullptr;
    const char* apply_rejected = nullptr;  // logged before the common message
    const char* request_failed = nullptr;  // the same, when there was no memory for the request
};

extern const Object kPppoe, kDhcp, kLan, kWan, kIptv, kVlan;
extern const Object* const kObjects[CWMP_STAGED_OBJECTS];

class Record {
  public:
    static Record staging(const Object& object) { return {object, object.staging}; }
    static Record revert(const Object& object) { return {object, object.revert}; }

    std::int32_t& enable() const { return *reinterpret_cast<std::int32_t*>(bytes_); }
    std::uint32_t& checked() const {
        return *reinterpret_cast<std::uint32_t*>(bytes_ + object_.size - sizeof(std::uint32_t));
    }

    // Never longer than the field, whoever filled the record.
    std::string_view text(int option) const;
    // Up to the first zero byte, in whichever field that stands.
    std::size_t length(int option) const;
    void put_text(int option, std::string_view text) const;

    // Everything but the marker.
    void copy_fields_from(const Record& other) const;
    void clear() const;

  private:
    Record(const Object& object, void* bytes) : object_(object), bytes_(static_cast<char*>(bytes)) {}
    const Field& field(int option) const;

    const Object& object_;
    char* bytes_;
};

}  // namespace cwmp::staged

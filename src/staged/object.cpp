#include "staged/object.h"

#include <algorithm>
#include <cstring>

#include "core/text.h"

namespace cwmp::staged {

std::string_view Record::text(int option) const {
    const Field& field = object_.field(option);
    const char* start = bytes_ + field.offset;
    return {start, strnlen(start, field.width)};
}

std::size_t Record::length(int option) const {
    const std::uint16_t offset = object_.field(option).offset;
    return strnlen(bytes_ + offset, object_.records.size - offset);
}

void Record::put_text(int option, std::string_view text) const {
    const Field& field = object_.field(option);
    char* start = bytes_ + field.offset;
    const std::size_t length = std::min<std::size_t>(text.size(), field.kept);
    std::memmove(start, text.data(), length);
    std::memset(start + length, 0, field.width - length);
}

std::string Record::value(int option) const {
    return object_.is_switch(option) ? decimal(enable()) : std::string(text(option));
}

void Record::put(int option, const std::string& value) const {
    if (object_.is_switch(option)) {
        enable() = decimal_prefix(value.c_str());
    } else {
        put_text(option, value);
    }
}

void Record::clear() const { std::memset(bytes_, 0, object_.records.size); }

}  // namespace cwmp::staged

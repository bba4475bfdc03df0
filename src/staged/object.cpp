#include "staged/object.h"

#include <algorithm>
#include <cassert>
#include <cstring>

namespace cwmp::staged {

const Field& Record::field(int option) const {
    assert(option >= 0 && option < object_.count);
    return object_.fields[option];
}

std::string_view Record::text(int option) const {
    const Field& field = this->field(option);
    const char* start = bytes_ + field.offset;
    return {start, strnlen(start, field.width)};
}

std::size_t Record::length(int option) const {
    const std::uint16_t offset = field(option).offset;
    return strnlen(bytes_ + offset, object_.size - offset);
}

void Record::put_text(int option, std::string_view text) const {
    const Field& field = this->field(option);
    char* start = bytes_ + field.offset;
    const std::size_t length = std::min<std::size_t>(text.size(), field.kept);
    std::memmove(start, text.data(), length);
    std::memset(start + length, 0, field.width - length);
}

void Record::copy_fields_from(const Record& other) const {
    for (int option = 0; option < object_.count; ++option) {
        if (object_.fields[option].kind == Kind::enable) {
            enable() = other.enable();
        } else {
            put_text(option, other.text(option));
        }
    }
}

void Record::clear() const { std::memset(bytes_, 0, object_.size); }

}  // namespace cwmp::staged

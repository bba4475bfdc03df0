#include "types.h"

#include <algorithm>
#include <cstring>

#include "text.h"

namespace cwmp {

namespace {

using Base = Type::Base;
using Fit = Type::Fit;

struct BaseName {
    std::string_view name;
    Base base;
    std::string_view wire;
};

constexpr BaseName kBases[] = {
    {"string", Base::String, "string"},
    {"int", Base::Int, "int"},
    {"unsignedInt", Base::UnsignedInt, "unsignedInt"},
    {"long", Base::Long, "long"},
    {"unsignedLong", Base::UnsignedLong, "unsignedLong"},
    {"boolean", Base::Boolean, "boolean"},
    {"dateTime", Base::DateTime, "dateTime"},
    {"hexBinary", Base::HexBinary, "hexBinary"},
    {"IPv4Address", Base::IPv4Address, "string"},
    {"IPAddress", Base::IPAddress, "string"},
    {"MACAddress", Base::MACAddress, "string"},
};

const BaseName& row_of(Base base) {
    return *std::find_if(std::begin(kBases), std::end(kBases), [=](const auto& row) { return row.base == base; });
}

bool consume(std::string_view& text, std::string_view end) {
    if (!text.ends_with(end)) return false;
    text.remove_suffix(end.size());
    return true;
}

// "[1:3]", "(64)" and "{a|b}" behind a base: what stands in the brackets.
std::optional<std::string> bracket(std::string_view& text, char open, char close) {
    const std::size_t at = text.find(open);
    if (at == std::string_view::npos || !consume(text, {&close, 1})) return std::nullopt;
    std::string inside(text.substr(at + 1));
    text = text.substr(0, at);
    return inside;
}

bool set_bounds(Type& type, const std::string& text, bool single_is_most) {
    const std::size_t colon = text.find(':');
    if (colon == std::string::npos && !single_is_most) return false;
    const std::string least = colon == std::string::npos ? "" : text.substr(0, colon);
    const std::string most = colon == std::string::npos ? text : text.substr(colon + 1);
    type.least = decimal<std::int64_t>(least);
    type.most = decimal<std::int64_t>(most);
    return (least.empty() || type.least) && (most.empty() || type.most) && (type.least || type.most);
}

bool within(const Type& type, std::int64_t number) {
    return (!type.least || number >= *type.least) && (!type.most || number <= *type.most);
}

bool is_ipv4(const std::string& value) {
    const auto parts = split(value, '.');
    return parts.size() == 4 && std::all_of(parts.begin(), parts.end(), [](const std::string& part) {
               const auto number = decimal<int>(part);
               return part.size() <= 3 && number && *number >= 0 && *number <= 255 && part[0] != '-';
           });
}

bool all_of(std::string_view text, std::string_view letters) {
    return !text.empty() && text.find_first_not_of(letters) == std::string_view::npos;
}

constexpr std::string_view kHexadecimal = "0123456789abcdefABCDEF";

bool is_mac(const std::string& value) {
    const auto parts = split(value, ':');
    return parts.size() == 6 && std::all_of(parts.begin(), parts.end(), [](const std::string& part) {
               return part.size() == 2 && all_of(part, kHexadecimal);
           });
}

// 2024-05-01T12:00:00, then perhaps a fraction, then perhaps Z or an offset.
bool is_date_time(const std::string& value) {
    constexpr std::string_view kShape = "dddd-dd-ddTdd:dd:dd";
    if (value.size() < kShape.size()) return false;
    for (std::size_t i = 0; i < kShape.size(); ++i) {
        const bool digit = value[i] >= '0' && value[i] <= '9';
        if (kShape[i] == 'd' ? !digit : value[i] != kShape[i]) return false;
    }
    return value.find_first_not_of("0123456789.+-:Z", kShape.size()) == std::string::npos;
}

bool is_boolean(const std::string& value) {
    return value == "0" || value == "1" || value == "true" || value == "false";
}

template <typename Number>
Fit fit_number(const Type& type, const std::string& value) {
    const auto number = decimal<Number>(value);
    if (!number) return Fit::WrongType;
    const bool huge = *number > 0 && static_cast<std::uint64_t>(*number) > INT64_MAX;
    const std::int64_t bounded = huge ? INT64_MAX : static_cast<std::int64_t>(*number);
    return within(type, bounded) ? Fit::Good : Fit::OutOfBounds;
}

Fit of_form(bool good) { return good ? Fit::Good : Fit::WrongType; }

Fit fit_base(const Type& type, const std::string& value) {
    switch (type.base) {
        case Base::String:
            return within(type, static_cast<std::int64_t>(value.size())) ? Fit::Good : Fit::OutOfBounds;
        case Base::Int:
            return fit_number<std::int32_t>(type, value);
        case Base::UnsignedInt:
            return fit_number<std::uint32_t>(type, value);
        case Base::Long:
            return fit_number<std::int64_t>(type, value);
        case Base::UnsignedLong:
            return fit_number<std::uint64_t>(type, value);
        case Base::Boolean:
            return of_form(is_boolean(value));
        case Base::DateTime:
            return of_form(is_date_time(value));
        case Base::HexBinary:
            return of_form(value.size() % 2 == 0 && (value.empty() || all_of(value, kHexadecimal)));
        case Base::IPv4Address:
            return of_form(value.empty() || is_ipv4(value));
        case Base::IPAddress:
            return of_form(value.empty() || is_ipv4(value) ||
                           (value.find(':') != std::string::npos && all_of(value, "0123456789abcdefABCDEF:.")));
        case Base::MACAddress:
            return of_form(value.empty() || is_mac(value));
    }
    return Fit::WrongType;
}

Fit fit_one(const Type& type, const std::string& value) {
    const Fit fit = fit_base(type, value);
    if (fit != Fit::Good || type.words.empty()) return fit;
    const bool known = std::find(type.words.begin(), type.words.end(), value) != type.words.end();
    return known ? Fit::Good : Fit::OutOfBounds;
}

std::string trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string::npos) return "";
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

}  // namespace

std::optional<Type> Type::parse(const std::string& text) {
    Type type;
    type.text = text;
    std::string_view rest = text;
    type.optional = consume(rest, "?");
    if (rest.starts_with("list(") && consume(rest, ")")) {
        type.list = true;
        rest.remove_prefix(std::strlen("list("));
    }
    if (const auto words = bracket(rest, '{', '}')) type.words = split(*words, '|');
    if (const auto range = bracket(rest, '[', ']')) {
        if (!set_bounds(type, *range, false)) return std::nullopt;
    } else if (const auto size = bracket(rest, '(', ')')) {
        if (rest != "string" || !set_bounds(type, *size, true)) return std::nullopt;
    }
    const auto* const row =
        std::find_if(std::begin(kBases), std::end(kBases), [=](const auto& known) { return known.name == rest; });
    if (row == std::end(kBases)) return std::nullopt;
    type.base = row->base;
    const bool bounded = type.least || type.most;
    if (bounded && !type.number() && type.base != Base::String) return std::nullopt;
    return type;
}

std::string_view Type::wire_name() const { return list ? "string" : row_of(base).wire; }

std::string_view Type::base_name() const { return row_of(base).name; }

Type::Fit Type::fit(const std::string& value) const {
    if (value.empty() && (optional || list)) return Fit::Good;
    if (!list) return fit_one(*this, value);
    Fit worst = Fit::Good;
    for (const std::string& item : split(value, ',')) {
        const Fit one = fit_one(*this, trimmed(item));
        if (one == Fit::WrongType) return one;
        if (one != Fit::Good) worst = one;
    }
    return worst;
}

std::string Type::normalised(const std::string& value) const {
    if (base != Base::Boolean || list) return value;
    if (value == "true") return "1";
    if (value == "false") return "0";
    return value;
}

}  // namespace cwmp

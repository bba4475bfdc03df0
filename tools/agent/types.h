#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cwmp {

// The type of a parameter, as the model writes it: string(64), string(8:63), unsignedInt[1:65535],
// string{None|WPA2-Personal}, list(IPv4Address). A type that ends in "?" also allows an empty value.
struct Type {
    enum class Base {
        String,
        Int,
        UnsignedInt,
        Long,
        UnsignedLong,
        Boolean,
        DateTime,
        HexBinary,
        IPv4Address,
        IPAddress,
        MACAddress,
    };
    enum class Fit { Good, WrongType, OutOfBounds };

    Base base = Base::String;
    bool list = false;
    bool optional = false;              // may be empty
    std::optional<std::int64_t> least;  // of a number, or of a string's length
    std::optional<std::int64_t> most;
    std::vector<std::string> words;  // of an enumeration
    std::string text = "string";     // as the model writes it

    // Nothing when the text is not a type.
    static std::optional<Type> parse(const std::string& text);

    bool number() const { return base >= Base::Int && base <= Base::UnsignedLong; }

    // Its name where a message carries a value: "xsd:" and this.
    std::string_view wire_name() const;

    // The name of the base as the model writes it.
    std::string_view base_name() const;

    Fit fit(const std::string& value) const;
    bool holds(const std::string& value) const { return fit(value) == Fit::Good; }

    // How a handler wants it: a boolean is "1" or "0", whichever of its four spellings came.
    std::string normalised(const std::string& value) const;
};

}  // namespace cwmp

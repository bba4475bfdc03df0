#include "values.h"

#include <algorithm>
#include <initializer_list>

#include "text.h"

namespace cwmp {

namespace {

using Base = Type::Base;

class Values {
  public:
    void add(const std::string& value) {
        if (std::find(list.begin(), list.end(), value) == list.end()) list.push_back(value);
    }
    void add(std::initializer_list<const char*> values) {
        for (const char* value : values) add(std::string(value));
    }
    std::vector<std::string> list;
};

void add_number(Values& values, const Type& type) {
    if (type.least) values.add(std::to_string(*type.least));
    if (type.most) values.add(std::to_string(*type.most));
    values.add({"7", "1", "36", "0", "-1", "1000", "65536", "200000"});
    if (type.least) values.add(std::to_string(*type.least - 1));
    if (type.most) values.add(std::to_string(*type.most + 1));
    values.add({"12a", "zwei", ""});
}

void add_text(Values& values, const Type& type) {
    const auto most = static_cast<std::size_t>(type.most.value_or(64));
    const auto least = static_cast<std::size_t>(type.least.value_or(0));
    if (least > 0) {
        values.add(std::string(least, 'a'));
        values.add(std::string(least - 1, 'a'));
    }
    values.add({"example-text", "1", "a b"});
    for (std::size_t size : {most, most + 1, std::size_t{512}, std::size_t{513}}) {
        if (size <= 2049) values.add(std::string(size, 'a'));
    }
    values.add({"", "-x", "a'b", "a\nb", "Requested"});
    values.add(std::string(32, 'a'));
    values.add(std::string(33, 'a'));
}

void add_address(Values& values) {
    values.add({"192.168.0.77", "10.9.8.7", "255.255.255.0", "0.0.0.0", "127.0.0.1", "224.0.0.1", "08.8.8.8",
                "192.168.0.256", "192.168.0", "1.2.3.4.5", "localhost", ""});
}

void add_base(Values& values, const Type& type) {
    switch (type.base) {
        case Base::Boolean:
            return values.add({"1", "0", "true", "false", "TRUE", "2", "on", ""});
        case Base::Int:
        case Base::UnsignedInt:
        case Base::Long:
        case Base::UnsignedLong:
            return add_number(values, type);
        case Base::IPv4Address:
        case Base::IPAddress:
            return add_address(values);
        case Base::MACAddress:
            return values.add({"02:11:22:33:44:55", "aa:bb:cc:DD:EE:FF", "00:00:00:00:00:00", "FF:FF:FF:FF:FF:FF",
                               "01:00:5e:00:00:01", "02-11-22-33-44-55", "02:11:22:33:44", "021122334455",
                               "02:11:22:33:44:5g", ""});
        case Base::DateTime:
            return values.add({"2024-05-01T12:00:00Z", "0001-01-01T00:00:00Z", "yesterday", ""});
        case Base::String:
        case Base::HexBinary:
            return add_text(values, type);
    }
}

}  // namespace

std::vector<std::string> values_to_try(const Type& type) {
    Values values;
    for (const std::string& word : type.words) {
        values.add(word);
        std::string other = word;
        for (char& letter : other) letter = static_cast<char>(letter ^ (letter >= 'a' && letter <= 'z' ? 0x20 : 0));
        values.add(other);
    }
    if (type.words.empty() || type.number()) {
        add_base(values, type);
    } else {
        values.add({"other", "1", "0", ""});
    }
    if (type.list && !values.list.empty()) {
        const std::string one = values.list[0], two = values.list[1 % values.list.size()];
        values.add(one + "," + two);
        values.add(one + ", " + two);
        values.add(one + "," + two + "," + one);
    }
    return values.list;
}

const std::vector<std::string>& contents_to_try() {
    static const std::vector<std::string> contents = {"0",
                                                      "1",
                                                      "2",
                                                      "3",
                                                      "4",
                                                      "100",
                                                      "204800",
                                                      "on",
                                                      "off",
                                                      "true",
                                                      "false",
                                                      "UP",
                                                      "up",
                                                      "down",
                                                      "full",
                                                      "half",
                                                      "1000Mb/s",
                                                      "dhcp",
                                                      "static",
                                                      "pppoe",
                                                      "l2tp",
                                                      "pptp",
                                                      "pppoa",
                                                      "dynamic",
                                                      "Router",
                                                      "AP",
                                                      "master",
                                                      "none",
                                                      "wpa2",
                                                      "wpa3",
                                                      "wpa3+wpa2",
                                                      "wpa2+wpa",
                                                      "psk2+ccmp",
                                                      "psk-mixed/ccmp+tkip",
                                                      "band2_4",
                                                      "band5",
                                                      "band6",
                                                      "connected",
                                                      "disconnected",
                                                      "idle",
                                                      "bridge",
                                                      "normal",
                                                      "HT20",
                                                      "HT160",
                                                      "11axa",
                                                      "11ac",
                                                      "11axg",
                                                      "11bg",
                                                      "192.168.0.9",
                                                      "0.0.0.0",
                                                      "00-00-5e-00-53-77",
                                                      "br-lan",
                                                      "ath0",
                                                      "\"connecting\",",
                                                      "\"connected\",",
                                                      "\"disconnected\",",
                                                      "\"disconnecting\",",
                                                      " 2.412",
                                                      "7 seven",
                                                      ""};
    return contents;
}

std::string shown(const std::string& value) {
    std::string result;
    for (std::size_t at = 0; at < value.size();) {
        std::size_t run = 1;
        while (at + run < value.size() && value[at + run] == value[at]) ++run;
        if (run > 6) {
            result += std::string(1, value[at]) + "*" + std::to_string(run);
        } else {
            result += printable(value.substr(at, run));
        }
        at += run;
    }
    return result;
}

}  // namespace cwmp

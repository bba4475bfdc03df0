// Rows of a call, and what each did.
#include <algorithm>
#include <cstring>
#include <functional>
#include <stdexcept>

#include "cwmp/agent_state.h"
#include "cwmp/apply_flags.h"
#include "no_free_descriptor.h"
#include "router_test.h"
#include "rows.h"

using rows::Words;

namespace {

constexpr unsigned kEarlierFlag = 0x80000000;
constexpr std::size_t kMostArguments = 8;

constexpr cwmp_agent_state kAgent = {
    .port = 65535, .path = "/path", .acs_url = "http://acs/", .host = "192.0.2.10"};

constexpr std::pair<const char*, int> kOperations[] = {
    {"get", CWMP_OP_GET},     {"set", CWMP_OP_APPLY}, {"stage", CWMP_OP_STAGE},   {"check", CWMP_OP_CHECK},
    {"apply", CWMP_OP_APPLY}, {"add", CWMP_OP_ADD},   {"delete", CWMP_OP_DELETE}, {"list", CWMP_OP_LIST}};

constexpr std::pair<const char*, unsigned> kFlags[] = {{"WIRELESS", CWMP_APPLY_WIRELESS},
                                                       {"MANAGEMENT_SERVER", CWMP_APPLY_MANAGEMENT_SERVER},
                                                       {"DHCP_SERVER", CWMP_APPLY_DHCP_SERVER},
                                                       {"WAN", CWMP_APPLY_WAN},
                                                       {"LAN", CWMP_APPLY_LAN},
                                                       {"IPTV", CWMP_APPLY_IPTV},
                                                       {"NAT", CWMP_APPLY_NAT},
                                                       {"XMPP", CWMP_APPLY_XMPP},
                                                       {"DOWNLOAD_TEST", CWMP_APPLY_DOWNLOAD_TEST},
                                                       {"UPLOAD_TEST", CWMP_APPLY_UPLOAD_TEST},
                                                       {"STUN", CWMP_APPLY_STUN},
                                                       {"PING_TEST", CWMP_APPLY_PING_TEST},
                                                       {"TRACE_ROUTE", CWMP_APPLY_TRACE_ROUTE},
                                                       {"UDP_ECHO", CWMP_APPLY_UDP_ECHO},
                                                       {"WIRELESS_MODE", CWMP_APPLY_WIRELESS_MODE}};

int operation(const std::string& name) {
    for (const auto& [word, op] : kOperations)
        if (name == word) return op;
    throw std::runtime_error("no such call: " + name);
}

bool is_of_store(const std::string& event) {
    for (const char* function : {"uciRaw", "is_support_isp_reset:", "IsOptionAllowToChange:"})
        if (event.starts_with(function)) return true;
    return false;
}

std::string flags_of(unsigned flags) {
    std::string names;
    for (const auto& [name, bit] : kFlags) {
        if ((flags & bit) != 0) names += (names.empty() ? "flags " : ",") + std::string(name);
        flags &= ~bit;
    }
    if (flags != kEarlierFlag) names += " and bits " + std::to_string(flags);
    return names;
}

std::string joined(const Words& parts, const char* separator) {
    std::string text;
    for (const auto& part : parts) text += (&part == parts.data() ? "" : separator) + part;
    return text;
}

void replace_all(std::string& text, const std::string& old, const std::string& now) {
    for (std::size_t at = 0; (at = text.find(old, at)) != std::string::npos; at += now.size())
        text.replace(at, old.size(), now);
}

// "1 / 2", "-1 x3": one text for all when all did the same.
std::string joined_calls(const Words& told) {
    if (std::equal(told.begin() + 1, told.end(), told.begin())) return told[0];
    Words runs;
    for (std::size_t i = 0, length = 0; i < told.size(); i += length) {
        for (length = 1; i + length < told.size() && told[i + length] == told[i];) ++length;
        runs.push_back(told[i] + (length == 1 ? "" : " x" + std::to_string(length)));
    }
    return joined(runs, " / ");
}

std::string as_value(const std::string& text) { return text.empty() ? "''" : rows::escape(text); }

std::string dotted(const Locate& locate) {
    std::string text = std::to_string(locate[0]);
    std::size_t last = CWMP_LOCATE_SIZE - 1;
    while (last > 0 && locate[last] == 0) --last;
    for (std::size_t i = 1; i <= last; ++i) text += "." + std::to_string(locate[i]);
    return text;
}

Locate locate_of(const std::string& text) {
    Locate locate{};
    std::size_t i = 0;
    for (const auto& number : rows::split(text, ".")) locate.at(i++) = std::stoi(number);
    return locate;
}

// Everything before `mark`, which is cut off together with the mark; all when there is none.
std::string take_until(std::string& text, const std::string& mark) {
    const auto end = text.find(mark);
    const std::string head = text.substr(0, end);
    text = end == std::string::npos ? "" : text.substr(end + mark.size());
    return head;
}

// Directory and tuple of "wifi.ap.ssid", "tr069/hosts.1.mac", "profile.d/profile.a.b".
std::pair<std::string, std::string> place_of(const std::string& name) {
    const auto slash = name.find('/');
    if (slash == std::string::npos) return {kLive, name};
    const std::string directory = name.substr(0, slash);
    return {directory == "profile.d" ? kProfile : "/tmp/" + directory, name.substr(slash + 1)};
}

}  // namespace

void RouterTest::world(const std::string& line) {
    std::string rest = line;
    const std::string word = rest.substr(0, rest.find(' '));
    const auto arguments = [&] {
        take_until(rest, " ");
        return take_until(rest, ": ");
    };
    if (word == "answer") {
        std::string command = arguments();
        const auto status = command.ends_with(']') ? command.rfind(" [") : std::string::npos;
        const int code = status == std::string::npos ? 0 : std::stoi(command.substr(status + 2));
        answer(command.substr(0, status), rows::unescape(rest), code);
    } else if (word == "file") {
        const std::string path = arguments();
        file(path, rows::unescape(rest));
    } else if (word == "remove") {
        remove_file(arguments());
    } else if (word == "level") {
        const Words numbers = rows::words(arguments());
        level(std::stoi(numbers[0]), numbers.size() > 1 ? std::stoi(numbers[1]) : 0);
    } else if (word == "mute") {
        mute_ = arguments();
    } else if (word == "hear") {
        heard_ = rows::words(arguments());
    } else if (word == "show") {
        store_events_ = arguments() == "store";
    } else if (word == "agent") {
        agent_known_ = arguments() != "none";
    } else {
        std::map<std::string, Options> options;  // by directory and package
        for (std::string item : rows::split(line, " | ")) {
            const bool has_value = item.find('=') != std::string::npos;
            for (const auto& name : rows::expand(take_until(item, "="))) {
                const auto [directory, tuple] = place_of(name);
                const auto section = tuple.find('.') + 1, option = tuple.rfind('.') + 1;
                if (!has_value) change(name);
                // "mac3" for "hosts.3.mac"
                else if (item == "@")
                    options[directory + "/" + tuple.substr(0, section)].emplace_back(
                        tuple, tuple.substr(option) + tuple.substr(section, option - section - 1));
                else
                    options[directory + "/" + tuple.substr(0, section)].emplace_back(tuple,
                                                                                     rows::unescape(item));
            }
        }
        for (const auto& [package, values] : options) store(package.substr(0, package.rfind('/')), values);
    }
}

// "nat.rule_1:rule", "-wifi.ap.ssid", "-nat.rule_1", or "+wifi." for a package.
void RouterTest::change(const std::string& what) {
    const bool is_marked = what[0] == '-' || what[0] == '+';
    const auto [directory, tuple] = place_of(what.substr(is_marked ? 1 : 0));
    if (what[0] == '+')
        package(tuple.substr(0, tuple.size() - 1), "", directory);
    else if (what[0] == '-')
        erase(tuple, directory);
    else
        add_section(tuple.substr(0, tuple.find(':')), tuple.substr(tuple.find(':') + 1), directory);
}

// The check script's calls are told by their requests, "check_params lan_check {...}".
Words RouterTest::commands_with_requests() {
    const std::string script = "lua /usr/bin/tr069/check_params ";
    Words told = commands();
    const Words calls = tool_calls();
    auto call = calls.begin();
    for (auto& command : told) {
        if (!command.starts_with(script)) continue;
        const std::string verb = "check_params " + rows::trim(command.substr(script.size()));
        call = std::find_if(call, calls.end(), [&](const auto& each) { return each.starts_with(verb); });
        if (call == calls.end()) break;
        command = *call++;
    }
    return told;
}

std::string RouterTest::effects(const std::function<std::string()>& call) {
    forget();
    const rows::Snapshot before = rows::snapshot();
    const std::string result = [&] {
        std::optional<NoFreeDescriptor> none;
        if (starved_) none.emplace();
        return call();
    }();
    Words parts;
    if (!result.empty()) parts.push_back(result);
    for (const auto& change : rows::changes(before, rows::snapshot())) parts.push_back(change);
    if (mute_.find('$') == std::string::npos) {
        for (const auto& command : commands_with_requests()) parts.push_back("$ " + rows::escape(command));
    }
    if (mute_.find('!') == std::string::npos) {
        for (auto event : console()) {
            while (event.ends_with('\n')) event.pop_back();
            if (!store_events_ && is_of_store(event)) continue;
            const auto is_in = [&](const std::string& text) { return event.find(text) != std::string::npos; };
            if (!heard_.empty() && std::none_of(heard_.begin(), heard_.end(), is_in)) continue;
            parts.push_back("! " + rows::escape(event));
        }
    }
    return parts.empty() ? "nothing" : joined(parts, " | ");
}

// The value is 'text' or null.
std::string RouterTest::told_handler(int op, const std::string& name, const Locate& given,
                                     const std::string& word) {
    const bool is_null = word == "null";
    const std::string value = is_null ? "" : word.substr(1);
    const cwmp_agent_state* record = agent_known_ ? &kAgent : nullptr;
    Locate locate = given;
    std::vector<char> buffer(CWMP_VALUE_SIZE);
    const bool answers = op == CWMP_OP_GET || op == CWMP_OP_ADD;
    (answers ? std::string(kUntouched) : value).copy(buffer.data(), buffer.size() - 1);
    char* text = is_null ? nullptr : buffer.data();
    unsigned flags = kEarlierFlag;
    std::vector<uint32_t> numbers(32);
    auto capacity = static_cast<uint32_t>(numbers.size());
    if (op == CWMP_OP_LIST && !value.empty()) capacity = static_cast<uint32_t>(std::stoul(value));
    int code = 0;
    if (op == CWMP_OP_GET)
        code = call(handler(name.c_str()), op, locate.data(), buffer.data(), record);
    else if (op == CWMP_OP_LIST)
        code = call(handler(name.c_str()), op, locate.data(), numbers.data(), &capacity);
    else
        code = call(handler(name.c_str()), op, locate.data(), text, &flags, record);

    Words parts;
    if (code != 0) parts.push_back(std::to_string(code));
    if (answers && (code == 0 || std::strcmp(buffer.data(), kUntouched) != 0))
        parts.push_back(as_value(buffer.data()));
    EXPECT_TRUE(answers || op == CWMP_OP_LIST || value == buffer.data())
        << name << " changed the caller's text";
    if (op == CWMP_OP_LIST && code == 0) {
        std::string list = numbers[0] == 0 ? "none" : std::to_string(numbers[0]);
        for (std::size_t i = 1; i < numbers.size() && numbers[i] != 0; ++i)
            list += " " + std::to_string(numbers[i]);
        parts.push_back(list);
    }
    if (locate != given) parts.push_back("locate " + dotted(locate));
    const std::string raised = flags_of(flags);
    if (!raised.empty()) parts.push_back(raised);
    return joined(parts, " | ");
}

// Numbers, 'texts', null, a buffer of N bytes as ?N, and an int as ?. Every argument fits a register, so that one
// function type serves all.
std::string RouterTest::told_function(const std::string& verb, const std::string& name,
                                      const Words& arguments) {
    std::vector<std::vector<char>> texts(kMostArguments);
    std::array<long, kMostArguments> numbers{}, given{};
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& word = arguments[i];
        const bool is_text = word[0] == '\'';
        if (is_text || (word.size() > 1 && word[0] == '?')) {
            const std::string text = is_text ? word.substr(1) : std::string(kUntouched);
            texts[i].resize(is_text ? text.size() + 1 : static_cast<std::size_t>(std::stoi(word.substr(1))),
                            '\0');
            text.copy(texts[i].data(), texts[i].size() - 1);
            given[i] = reinterpret_cast<long>(texts[i].data());
        } else if (word == "?") {
            given[i] = reinterpret_cast<long>(&numbers[i]);
        } else if (word != "null") {
            given[i] = std::stol(word);
        }
    }
    using Function = long(long, long, long, long, long, long, long, long);
    auto* function = reinterpret_cast<Function*>(address(name.c_str()));
    const long result =
        function(given[0], given[1], given[2], given[3], given[4], given[5], given[6], given[7]);
    const auto* text = reinterpret_cast<const char*>(result);
    Words parts;
    if (verb == "call") parts.push_back(std::to_string(static_cast<int>(result)));
    if (verb == "text") parts.push_back(text == nullptr ? "null" : as_value(text));
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        if (arguments[i] == "?")
            parts.push_back(std::to_string(static_cast<int>(numbers[i])));
        else if (!texts[i].empty() && (arguments[i][0] != '\'' || arguments[i].substr(1) != texts[i].data()))
            parts.push_back(
                as_value(std::strcmp(texts[i].data(), kUntouched) == 0 ? kUntouched : texts[i].data()));
    }
    return joined(parts, " ");
}

// Every handler of the row with every place and value, the passes of a SET in turn.
Words RouterTest::told_handlers(const std::string& verb, std::string rest) {
    Words names, locates;
    for (const auto& word : rows::words(take_until(rest, " = "))) {
        auto& list = names.empty() ? names : locates;
        for (const auto& each : rows::expand(word)) list.push_back(each);
    }
    if (locates.empty()) locates.push_back("0");
    const Words values =
        rest.starts_with('\'') || rest == "null" ? rows::words(rest) : Words{"'" + rows::unescape(rest)};
    const Words passes = verb == "passes" ? Words{"stage", "check", "apply"} : Words{verb};
    Words told;
    for (const auto& name : names) {
        for (const auto& locate : locates) {
            for (const auto& value : values) {
                Words each;
                for (const auto& pass : passes) {
                    const int op = operation(pass);
                    each.push_back(effects([&] { return told_handler(op, name, locate_of(locate), value); }));
                    // A handler's own events need not name it.
                    replace_all(each.back(), "! " + name + ": ", "! ");
                }
                if (std::equal(each.begin() + 1, each.end(), each.begin())) each.resize(1);
                told.insert(told.end(), each.begin(), each.end());
            }
        }
    }
    return told;
}

// Stage, check and apply of several parameters together, reverted at the first refusal as the agent does it.
std::string RouterTest::told_transaction(const std::string& rest) {
    unsigned flags = kEarlierFlag;
    int code = 0;
    for (const int op : {CWMP_OP_STAGE, CWMP_OP_CHECK, CWMP_OP_APPLY}) {
        for (std::string change : rows::split(rest, " ; ")) {
            const Words place = rows::words(take_until(change, " = "));
            const std::string value = change == "''" ? "" : rows::unescape(change);
            Locate locate = locate_of(place.size() > 1 ? place[1] : "0");
            code = call(handler(place[0].c_str()), op, locate.data(), value.c_str(), &flags);
            if (code == 0) continue;
            call(handler("func_obj_revert"), CWMP_OP_APPLY, nullptr, nullptr, &flags);
            const std::string pass = op == CWMP_OP_STAGE   ? "stage "
                                     : op == CWMP_OP_CHECK ? "check "
                                                           : "apply ";
            const std::string raised = flags_of(flags);
            return pass + std::to_string(code) + (raised.empty() ? "" : " | " + raised);
        }
    }
    return flags_of(flags);
}

std::string RouterTest::told(const std::string& row) {
    std::string rest = row;
    starved_ = rest.starts_with("starved ");
    if (starved_) take_until(rest, " ");
    const std::string verb = take_until(rest, " ");
    if (verb == "transaction") return effects([&] { return told_transaction(rest); });
    if (verb != "call" && verb != "text" && verb != "do") return joined_calls(told_handlers(verb, rest));
    const std::string name = take_until(rest, " ");
    Words told;
    for (const auto& arguments : rows::split(rest, " ; "))
        told.push_back(effects([&] { return told_function(verb, name, rows::words(arguments)); }));
    if (told.empty()) told.push_back(effects([&] { return told_function(verb, name, {}); }));
    return joined_calls(told);
}

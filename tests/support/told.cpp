// Rows: the world, a call, and the one text that says what it did.
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <uci.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <set>
#include <utility>

#include "library.h"
#include "router_test.h"
#include "rows.h"

using rows::joined, rows::take_until, rows::Words;

namespace {

time_t seconds_ahead = 0;
bool has_contexts = true;

}  // namespace

// Found before those of the C library and libuci, by the library too.
extern "C" uci_context* uci_alloc_context() {
    static const auto real = reinterpret_cast<uci_context* (*)()>(dlsym(RTLD_NEXT, "uci_alloc_context"));
    return has_contexts ? real() : nullptr;
}

extern "C" int clock_gettime(clockid_t clock, timespec* now) noexcept {
    const auto result = syscall(SYS_clock_gettime, clock, now);
    now->tv_sec += seconds_ahead;
    return static_cast<int>(result);
}

namespace {

// While it runs, this process can open nothing, so that a pipe to a command cannot be made. Commands that are already
// written to the console still run: the programs started inherit none of the descriptors.
std::string starved(const std::function<std::string()>& call) {
    constexpr rlim_t kEnoughForAShell = 24;
    rlimit before{};
    getrlimit(RLIMIT_NOFILE, &before);
    const rlimit few = {kEnoughForAShell, before.rlim_max};
    setrlimit(RLIMIT_NOFILE, &few);
    std::vector<int> taken;
    for (int each = 0; (each = open("/", O_RDONLY | O_CLOEXEC)) >= 0;) taken.push_back(each);
    const std::string result = call();
    for (const int descriptor : taken) close(descriptor);
    setrlimit(RLIMIT_NOFILE, &before);
    return result;
}

constexpr unsigned kEarlierFlag = 0x80000000;
constexpr std::size_t kMostArguments = 8;

const std::string kGiven = " -> ";  // between a row's own world and its call
constexpr const char* kScript = "check_params ";
constexpr const char* kInForce = "check_params initialize_revert_data ";

// Their order is that of their bits.
constexpr const char* kFlags =
    "WIRELESS MANAGEMENT_SERVER DHCP_SERVER bit_3 WAN LAN IPTV NAT XMPP DOWNLOAD_TEST UPLOAD_TEST STUN "
    "PING_TEST TRACE_ROUTE UDP_ECHO WIRELESS_MODE";

const std::map<std::string, int> kOperations = {
    {"get", CWMP_OP_GET},     {"set", CWMP_OP_APPLY}, {"stage", CWMP_OP_STAGE},   {"check", CWMP_OP_CHECK},
    {"apply", CWMP_OP_APPLY}, {"add", CWMP_OP_ADD},   {"delete", CWMP_OP_DELETE}, {"list", CWMP_OP_LIST}};
const std::set<std::string> kOtherCalls = {"passes", "transaction", "group",   "call",    "text",
                                           "do",     "run",         "starved", "awaited", "poor"};

// What a call changed of them.
std::string flags_of(unsigned flags) {
    Words names = rows::words(kFlags), raised;
    names.resize(32, "unknown");
    for (std::size_t bit = 0; bit < names.size(); ++bit)
        if (((flags ^ kEarlierFlag) >> bit & 1) != 0) raised.push_back(names[bit]);
    return (raised.empty() ? "" : "flags ") + joined(raised, ",");
}

// "1 / 2", "-1 x3": one text for all when all did the same.
std::string joined_calls(const Words& told) {
    Words runs;
    for (std::size_t i = 0, length = 0; i < told.size(); i += length) {
        for (length = 1; i + length < told.size() && told[i + length] == told[i];) ++length;
        runs.push_back(told[i] + (length == 1 ? "" : " x" + std::to_string(length)));
    }
    return runs.size() == 1 ? told[0] : joined(runs, " / ");
}

std::string as_value(const std::string& text) { return text.empty() ? "''" : rows::escape(text); }

// The check script's by verb and request, "% lan_check {...}", and "% lan_revert" for that initialize_revert_data.
std::string as_command(const std::string& command) {
    const std::string text = rows::escape(command.starts_with("kill -9 ") ? "kill -9" : command);
    for (const std::string script : {kInForce, kScript})
        if (text.starts_with(script)) return "% " + text.substr(script.size());
    return "$ " + text;
}

std::string dotted(const Locate& locate) {
    std::size_t used = locate.size();
    while (used > 1 && locate[used - 1] == 0) --used;
    Words numbers;
    for (std::size_t i = 0; i < used; ++i) numbers.push_back(std::to_string(locate[i]));
    return joined(numbers, ".");
}

Locate locate_of(const std::string& text) {
    Locate locate{};
    std::size_t i = 0;
    for (const auto& number : rows::split(text, ".")) locate.at(i++) = std::stoi(number);
    return locate;
}

template <typename Numbers>
std::vector<char> bytes_of(const Numbers& numbers) {
    const auto* bytes = reinterpret_cast<const char*>(numbers.data());
    return std::vector<char>(bytes, bytes + numbers.size() * sizeof(int));
}

// What an argument of a function points to; nothing where it is a number.
std::vector<char> memory_of(const std::string& word) {
    if (word[0] == '\'') return std::vector<char>(word.c_str() + 1, word.c_str() + word.size() + 1);
    if (word == "?") return memory_of("[0]");
    if (word[0] == '[') {
        std::vector<int> numbers;
        for (const auto& each : rows::split(word.substr(1, word.size() - 2), ",")) numbers.push_back(std::stoi(each));
        return bytes_of(numbers);
    }
    if (word[0] == '?') {
        std::vector<char> buffer(std::stoul(word.substr(1)));
        std::string(kUntouched).copy(buffer.data(), buffer.size() - 1);
        return buffer;
    }
    if (word.find('.') == std::string::npos) return {};
    return bytes_of(locate_of(word));
}

}  // namespace

void RouterTest::world(const std::string& line) {
    static const std::set<std::string> kWithText = {"%", "answer", "file", "run"};
    std::string place;  // of the item before: ".option=x" is of the same section
    const bool has_text = kWithText.contains(line.substr(0, line.find(' ')));
    for (std::string item : has_text ? Words{line} : rows::split(line, " | ")) {
        if (setting(item)) continue;
        if (item[0] == '.') item.insert(0, place);
        const auto end = std::min(item.find_first_of(":="), item.size() - 1);
        place = item.substr(0, item[end] == ':' ? end : item.rfind('.', end));
        const std::string mark = item.find('=') == std::string::npos ? "" : "=";
        for (const auto& name : rows::expand(take_until(item, "="))) {
            const Words parts = rows::split(name, ".");
            // "mac3" for "hosts.3.mac"
            const std::string value = item == "@" ? parts.end()[-1] + parts.end()[-2] : rows::unescape(item);
            stores::change(name + mark + value);
        }
    }
}

// Anything but an option or a section of the store, for which it is false: a call too that tells nothing.
bool RouterTest::setting(const std::string& item) {
    std::string rest = item;
    const std::string word = take_until(rest, " "), subject = take_until(rest, ": "), text = rows::unescape(rest);
    const std::string script = subject.ends_with("_revert") ? kInForce : kScript;
    const auto answer_all = [&](const auto& command) { answer(command, text); };
    const auto file_all = [&](const std::optional<std::string>& content) {
        for (const auto& path : rows::expand(subject)) file(path, content);
    };
    const std::map<std::string, std::function<void()>> words = {
        {"%", [&] { std::ranges::for_each(rows::expand(script + subject), answer_all); }},
        {"agent", [&] { agent_known_ = subject != "none"; }},
        {"answer", [&] { std::ranges::for_each(rows::expand(subject), answer_all); }},
        {"file", [&] { file_all(text); }},
        {"hear", [&] { heard_ = rows::words(subject); }},
        {"later", [&] { seconds_ahead = std::stoi(subject); }},
        {"level", [&] { level(std::stoi(subject)); }},
        {"listen", [&] { listen(); }},
        {"mute", [&] { mute_ = subject; }},
        {"remove", [&] { file_all(std::nullopt); }},
        {"run", [&] { EXPECT_EQ(told_command(item.substr(word.size() + 1)), ""); }},
        {"show", [&] { output_shown_ = subject == "output"; }},
        {"use", [&] {
             const auto lines = stores::text_of("/usr/share/router/cases/" + subject + ".world");
             for (const auto& each : rows::split(lines, "\n")) world(each);
         }}};
    const auto found = words.find(word);
    if (found != words.end()) {
        found->second();
    } else if (is_call(item)) {
        EXPECT_EQ(told(item), "nothing") << item;
    }
    return found != words.end() || is_call(item);
}

bool RouterTest::is_heard(const std::string& event) const {
    static const Words kOfTheStore = {"uciRaw", "is_support_isp_reset:", "IsOptionAllowToChange:"};
    const auto begins = [&](const auto& text) { return event.starts_with(text); };
    const auto is_in = [&](const auto& word) { return word == "all" || event.find(word) != std::string::npos; };
    if (mutes('!')) return false;
    return heard_.empty() ? std::ranges::none_of(kOfTheStore, begins) : std::ranges::any_of(heard_, is_in);
}

std::string RouterTest::effects(const std::function<std::string()>& call, const std::string& name) {
    forget();
    const stores::Snapshot before = stores::snapshot();
    if (output_shown_) testing::internal::CaptureStdout();
    has_contexts = !poor_;
    Words parts = {starved_ ? starved(call) : call()};
    has_contexts = true;
    const std::string output = output_shown_ ? testing::internal::GetCapturedStdout() : "";
    if (awaited_) parts.push_back(std::to_string(wait_for_jobs()) + " killed");
    for (const auto& message : messages()) parts.push_back(rows::escape(message));
    for (const auto& change : mutes('=') ? Words{} : stores::changes(before, stores::snapshot(), place_))
        parts.push_back(change);
    parts.push_back(output.empty() ? "" : "> " + rows::escape(output));
    for (const auto& command : mutes('$') ? Words{} : commands()) parts.push_back(as_command(command));
    std::string speaker = name;
    for (const auto& event : console()) {
        if (!is_heard(event)) continue;
        std::string text = rows::escape(event.substr(0, event.find_last_not_of('\n') + 1));
        const std::string function = text.substr(0, text.find(": "));
        if (function == std::exchange(speaker, function)) take_until(text, ": ");
        parts.push_back("! " + text);
    }
    const std::string text = joined(parts, " | ");
    return text.empty() ? "nothing" : text;
}

// The value is 'text' or null.
std::string RouterTest::told_handler(int op, const std::string& name, const Locate& given, const std::string& word) {
    const auto value = word == "null" ? std::nullopt : std::optional(word.substr(1));
    const Result done = handle(op, name, given, value, kEarlierFlag);
    const bool answers = op == CWMP_OP_GET || op == CWMP_OP_ADD, lists = op == CWMP_OP_LIST && done.code == 0;
    Words numbers = {lists && done.numbers.empty() ? "none" : ""};
    for (const auto number : done.numbers) numbers.push_back(std::to_string(number));
    return joined({done.code == 0 ? "" : std::to_string(done.code),
                   answers && (done.code == 0 || done.value != kUntouched) ? as_value(done.value) : "",
                   lists ? joined(numbers, " ") : "", done.locate == given ? "" : "locate " + dotted(done.locate),
                   flags_of(done.flags)},
                  " | ");
}

// Numbers, 'texts', null, a place as 1.2, a buffer of N bytes as ?N, an int as ? and ints as [1,2]. Every argument fits
// a register, so that one function type serves all.
std::string RouterTest::told_function(const std::string& verb, const std::string& name, const Words& arguments) {
    std::array<long, kMostArguments> given{};
    std::vector<std::vector<char>> memory;
    for (const auto& word : arguments) {
        auto& own = memory.emplace_back(memory_of(word));
        const long number = own.empty() && word != "null" ? std::stol(word) : 0;
        given.at(memory.size() - 1) = own.empty() ? number : reinterpret_cast<long>(own.data());
    }
    using Function = long(long, long, long, long, long, long, long, long);
    const auto& [a, b, c, d, e, f, g, h] = given;
    const long result = symbol<Function>(name.c_str())(a, b, c, d, e, f, g, h);
    const auto* text = reinterpret_cast<const char*>(result);
    Words parts;
    if (verb == "call") parts.push_back(std::to_string(static_cast<int>(result)));
    if (verb == "text") parts.push_back(text == nullptr ? "null" : as_value(text));
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& word = arguments[i];
        const char* now = memory[i].data();
        if (word == "?" || word[0] == '[')
            for (std::size_t at = 0; at < memory[i].size(); at += sizeof(int))
                parts.push_back(std::to_string(*reinterpret_cast<const int*>(now + at)));
        else if (word[0] == '?' || (word[0] == '\'' && word.substr(1) != now))
            parts.push_back(as_value(now));
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
                    const auto call = [&] {
                        return told_handler(kOperations.at(pass), name, locate_of(locate), value);
                    };
                    each.push_back(effects(call, name));
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
    for (const char* pass : {"stage", "check", "apply"}) {
        for (std::string change : rows::split(rest, " ; ")) {
            const Words place = rows::words(take_until(change, " = "));
            const std::string value = change == "''" ? "" : rows::unescape(change);
            const Result done =
                handle(kOperations.at(pass), place[0], locate_of(place.size() > 1 ? place[1] : "0"), value, flags);
            flags = done.flags;
            if (done.code == 0) continue;
            cwmp::call(handler("func_obj_revert"), CWMP_OP_APPLY, nullptr, nullptr, &flags);
            return joined({pass + (" " + std::to_string(done.code)), flags_of(flags)}, " | ");
        }
    }
    return flags_of(flags);
}

// Fields of groups of settings, "lan 0=10.0.0.1 wan 4=DHCP", then the "check" and "apply" of all that were named, and
// the "revert". Tells what each returned unless all passed.
std::string RouterTest::told_group(const std::string& rest) {
    const Words groups = {"pppoe", "dhcp", "lan", "wan", "iptv", "vlan"};
    const auto& exec = symbol<int(int, int, int, const char*, unsigned*)>("func_obj_exec");
    unsigned flags = kEarlierFlag;
    std::vector<int> named;
    Words results;
    for (const auto& word : rows::words(rest)) {
        const auto group = std::find(groups.begin(), groups.end(), word);
        if (group != groups.end()) {
            named.push_back(static_cast<int>(group - groups.begin()));
        } else if (word == "revert") {
            cwmp::call(handler("func_obj_revert"), CWMP_OP_APPLY, nullptr, nullptr, &flags);
        } else if (word == "check" || word == "apply") {
            for (const int each : named)
                results.push_back(std::to_string(exec(each, 0, word == "check" ? 1 : 2, "", &flags)));
        } else {
            const auto value = rows::unescape(word.substr(word.find('=') + 1));
            results.push_back(std::to_string(exec(named.back(), std::stoi(word), 0, value.c_str(), &flags)));
        }
    }
    const bool passed = std::ranges::count(results, "1") == std::ssize(results);
    return joined({passed ? "" : joined(results, " "), flags_of(flags)}, " | ");
}

// Its exit code unless that is 0, and what it printed.
std::string RouterTest::told_command(const std::string& command) {
    unlink(kOutput);  // a process of an earlier command may still write there
    const int status = std::system(("{ " + command + "; } " + kToOutput).c_str());
    const std::string code = status == 0 ? "" : std::to_string(WEXITSTATUS(status)) + " ";
    return code + rows::escape(text_of(kOutput).value_or(""));
}

bool RouterTest::is_call(const std::string& row) {
    const auto start = row.find(kGiven) == std::string::npos ? 0 : row.find(kGiven) + kGiven.size();
    const std::string verb = row.substr(start, row.find(' ', start) - start);
    return kOperations.contains(verb) || kOtherCalls.contains(verb);
}

std::string RouterTest::told(const std::string& row) {
    std::string rest = row;
    if (row.find(kGiven) != std::string::npos) world(take_until(rest, kGiven));
    place_.clear();
    starved_ = rest.starts_with("starved ");
    awaited_ = rest.starts_with("awaited ");
    poor_ = rest.starts_with("poor ");
    if (starved_ || awaited_ || poor_) take_until(rest, " ");
    const std::string verb = take_until(rest, " ");
    if (verb == "transaction") return joined_calls({effects([&] { return told_transaction(rest); })});
    if (verb == "group") return joined_calls({effects([&] { return told_group(rest); })});
    if (verb == "run") return joined_calls({effects([&] { return told_command(rest); })});
    if (verb != "call" && verb != "text" && verb != "do") return joined_calls(told_handlers(verb, rest));
    const std::string name = take_until(rest, " ");
    Words told;
    do {
        for (const auto& arguments : rows::expand(take_until(rest, " ; ")))
            told.push_back(effects([&] { return told_function(verb, name, rows::words(arguments)); }, name));
    } while (!rest.empty());
    return joined_calls(told);
}

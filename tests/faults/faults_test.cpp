// Lets every call of a kind fail that some operations make, once or from then on, and kills them at every change of
// the file system; then looks at what the store holds. Around it: full and read-only stores, two at once, long loops.
//   faults_test [SECONDS] [SEED]   of the fault points as many as fit, in an order made from the seed; 0: all
// holds P1, P3, P7, P8, P9
#include <fcntl.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "host.h"

namespace {

namespace fs = std::filesystem;
using Words = std::vector<std::string>;
using World = std::map<std::string, std::string>;

constexpr const char* kSelf = "/usr/lib/router/tests/faults_test";
constexpr const char* kPreload = "/usr/lib/router/tests/failing_calls.so";
constexpr const char* kCount = "/var/run/fault_count";
constexpr const char* kLive = "/etc/config";
constexpr const char* kScanResults = "/tmp/tr069/diagnostics_config";

enum class Holds { old_or_new, done_is_new, transaction, scan };

struct Row {
    const char* name;
    Words command;
    Holds holds;
    bool refused = false;  // goes back by itself
    bool from_start = false;
};

const Words kDmSet = {"/usr/bin/dm", "set", "Device.DeviceInfo.ProvisioningCode=changed",
                      "Device.WiFi.SSID.2.SSID=changed",
                      "Device.DHCPv4.Server.Pool.1.MinAddress=192.168.0.110"};
Words with(Words words, const char* last) {
    words.emplace_back(last);
    return words;
}

const Row kRows[] = {
    {"one option", {kSelf, "host", "option"}, Holds::old_or_new},
    {"an added mapping", {kSelf, "host", "add"}, Holds::done_is_new},
    {"a transaction", {kSelf, "host", "transaction"}, Holds::transaction},
    {"refused in stage", {kSelf, "host", "transaction", "2"}, Holds::transaction, true},
    {"refused in check", {kSelf, "host", "transaction", "3"}, Holds::transaction, true},
    {"refused in apply", {kSelf, "host", "transaction", "1"}, Holds::transaction, true},
    {"dm set", kDmSet, Holds::transaction, false, true},
    {"dm set, refused", with(kDmSet, "Device.ManagementServer.STUNMinimumKeepAlivePeriod=9999999"),
     Holds::transaction, true, true},
    {"a scan", {kSelf, "host", "scan"}, Holds::scan},
};

struct Fault {
    std::string kind;
    int at = 0;
    bool lasts = false;
};

struct Outcome {
    int code = 0;
    int signal = 0;
    std::map<std::string, int> calls;
};

std::string text_of(const std::string& path) {
    std::stringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

void write_text(const std::string& path, const std::string& text) { std::ofstream(path) << text; }

World world() {
    World files;
    std::error_code none;
    for (const char* directory : {kLive, "/tmp/cwmp-config", "/tmp/cwmp-config-force"}) {
        for (const auto& entry : fs::directory_iterator(directory, none)) {
            const std::string path = entry.path();
            if (entry.path().filename().native()[0] != '.') files[path] = text_of(path);
        }
    }
    files[kScanResults] = text_of(kScanResults);
    return files;
}

// The check script writes its packages with other blank lines than the library.
std::string without_blank_lines(std::string text) {
    for (std::size_t at = 0; (at = text.find("\n\n")) != std::string::npos;) text.erase(at, 1);
    return text[0] == '\n' ? text.substr(1) : text;
}

std::string difference(const World& is, const World& wanted) {
    static const Words kOfTheScript = {"/etc/config/smartip_sync", "/etc/config/network",
                                       "/etc/config/dhcp_server_sync"};
    World all = is;
    all.insert(wanted.begin(), wanted.end());
    std::string names;
    for (const auto& [path, text] : all) {
        std::string one = is.contains(path) ? is.at(path) : "",
                    other = wanted.contains(path) ? wanted.at(path) : "";
        if (std::find(kOfTheScript.begin(), kOfTheScript.end(), path) != kOfTheScript.end()) {
            one = without_blank_lines(one);
            other = without_blank_lines(other);
        }
        if (one != other) names += ' ' + path;
    }
    return names;
}

void restore(const World& files) {
    std::error_code none;
    for (const auto& [path, text] : world())
        if (!files.contains(path)) fs::remove(path, none);
    for (const char* path : {"/tmp/cwmp-config", "/tmp/cwmp-config-force", "/tmp/tr069/.transaction",
                             "/tmp/ready_to_revert_item", "/tmp/.uci", "/var/state", "/dev/console"})
        fs::remove_all(path, none);
    fs::create_directory("/var/state", none);
    write_text("/dev/console", "");
    for (const auto& [path, text] : files) {
        fs::create_directory(fs::path(path).parent_path(), none);
        write_text(path, text);
    }
    for (const auto& entry : fs::directory_iterator(kLive))
        if (entry.path().filename().native()[0] == '.') fs::remove(entry.path(), none);
}

pid_t start(const Words& command, const Fault& fault = {}, bool from_start = false) {
    const pid_t child = fork();
    if (child != 0) return child;
    if (!fault.kind.empty()) {
        setenv("LD_PRELOAD", kPreload, 1);
        setenv("FAULT_COUNT", kCount, 1);
        setenv("FAULT_KIND", fault.kind.c_str(), 1);
        setenv("FAULT_AT", std::to_string(fault.at).c_str(), 1);
        if (fault.lasts) setenv("FAULT_LASTS", "", 1);
        if (from_start) setenv("FAULT_ARMED", "", 1);
    }
    std::vector<char*> words;
    for (const std::string& word : command) words.push_back(const_cast<char*>(word.c_str()));
    words.push_back(nullptr);
    const int output = open("/var/run/fault_output", O_WRONLY | O_CREAT | O_APPEND, 0600);
    dup2(output, STDOUT_FILENO);
    dup2(output, STDERR_FILENO);
    execv(words[0], words.data());
    _exit(127);
}

Outcome outcome_of(pid_t child) {
    int status = 0;
    waitpid(child, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, WIFSIGNALED(status) ? WTERMSIG(status) : 0, {}};
}

// With its jobs to their end.
Outcome run(const Words& command, const Fault& fault = {}, bool from_start = false) {
    int counts[std::size(host::kKinds)] = {};
    write_text(kCount, std::string(sizeof counts, '\0'));
    const pid_t child = start(command, fault, from_start);
    Outcome outcome = outcome_of(child);
    while (waitpid(-1, nullptr, 0) > 0) {
    }
    std::ifstream(kCount).read(reinterpret_cast<char*>(counts), sizeof counts);
    for (std::size_t i = 0; i < std::size(counts); ++i) outcome.calls[host::kKinds[i]] = counts[i];
    return outcome;
}

int recover() { return run({kSelf, "host", "recover"}).code; }

// Every network that is listed is one that a whole scan lists.
std::string scan_fault(const World& is, const World& before, const World& wanted) {
    const std::string &results = is.at(kScanResults), &whole = wanted.at(kScanResults);
    for (std::size_t at = 0; (at = results.find("config Cell", at)) != std::string::npos; ++at) {
        const std::size_t facts = results.find('\n', at);  // the number may be another one
        const auto cell = results.substr(facts, results.find("\n\n", at) - facts);
        if (whole.find(cell + "\n\n") == std::string::npos) return "part of a network: " + cell;
    }
    return results == before.at(kScanResults) || results.ends_with("'\n\n") ? "" : "the results are cut off";
}

// What is wrong after a run; nothing if nothing is.
std::string fault_of(const Row& row, const Fault& fault, const Outcome& run, const World& before,
                     const World& after) {
    const auto either = [&](const World& is) {
        const auto from_old = difference(is, before);
        return from_old.empty() || difference(is, after).empty() ? ""
                                                                 : "neither the old nor the new:" + from_old;
    };
    const bool may_die = fault.kind == "kill" || fault.kind == "malloc";
    if (run.signal != 0 && !may_die) return "died of signal " + std::to_string(run.signal);
    const World now = world();
    if (row.holds == Holds::scan) return scan_fault(now, before, after);
    if (row.holds == Holds::old_or_new || (run.signal != 0 && row.holds == Holds::done_is_new))
        return either(now);
    if (run.signal == 0 && run.code == 0 && !difference(now, after).empty())
        return "done, but not new:" + difference(now, after);
    const bool is_dm = row.from_start;
    if (row.holds == Holds::done_is_new || (run.signal == 0 && !is_dm && run.code != host::kNotUndone)) {
        if (row.holds == Holds::transaction && recover() != host::kDone)
            return "ended, but still to be recovered";
        return run.code == 0 || difference(now, before).empty()
                   ? ""
                   : "not done, but changed:" + difference(now, before);
    }
    const int recovered = recover();
    if (recovered == host::kNotUndone) return "cannot be recovered";
    if (run.code == 0) return recovered == host::kDone ? "" : "done, and then undone";
    return recovered == host::kUndone ? difference(world(), before) : either(world());
}

int failures = 0;

void report(const std::string& what, const std::string& fault) {
    if (fault.empty()) return;
    ++failures;
    std::printf("FAILED %s: %s\n", what.c_str(), fault.c_str());
    std::fflush(stdout);
}

struct Point {
    const Row* row;
    Fault fault;
    const World* after;
};

std::vector<Point> fault_points(const World& before, std::map<const Row*, World>& after) {
    std::vector<Point> points;
    for (const Row& row : kRows) {
        restore(before);
        Outcome counted = run(row.command, {"open"}, row.from_start);
        after[&row] = row.refused ? before : world();
        report(row.name, (counted.code != 0) == row.refused ? fault_of(row, {}, counted, before, after[&row])
                                                            : "ended with " + std::to_string(counted.code));
        for (const std::string kind : host::kKinds) {
            const bool is_malloc = kind == "malloc";
            if (is_malloc && row.from_start) continue;
            constexpr int kMostMalloc = 60;
            for (int at = 1; at <= counted.calls[kind];
                 at += is_malloc ? counted.calls[kind] / kMostMalloc + 1 : 1)
                for (const bool lasts : {false, true})
                    if (!lasts || kind != "kill") points.push_back({&row, {kind, at, lasts}, &after[&row]});
        }
    }
    return points;
}

// As the seed has it, but of each row and kind some come early.
void mix(std::vector<Point>& points, unsigned seed) {
    std::shuffle(points.begin(), points.end(), std::mt19937(seed));
    std::map<std::pair<const Row*, std::string>, int> met;
    std::vector<std::pair<int, Point>> ranked;
    for (const Point& point : points) ranked.emplace_back(met[{point.row, point.fault.kind}]++, point);
    std::stable_sort(ranked.begin(), ranked.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    std::transform(ranked.begin(), ranked.end(), points.begin(),
                   [](const auto& each) { return each.second; });
}

void fail_calls(const World& before, int seconds, unsigned seed) {
    std::map<const Row*, World> after;
    auto points = fault_points(before, after);
    mix(points, seed);
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
    std::size_t done = 0;
    for (const auto& [row, fault, wanted] : points) {
        if (seconds > 0 && std::chrono::steady_clock::now() > end) break;
        restore(before);
        const Outcome outcome = run(row->command, fault, row->from_start);
        const std::string name = std::string(row->name) + ", " + fault.kind + ' ' + std::to_string(fault.at) +
                                 (fault.lasts ? " on" : "");
        const std::string found = fault_of(*row, fault, outcome, before, *wanted);
        // A call that fails while a refused transaction goes back: not solved yet, so that only the whole run fails.
        if (seconds > 0 && row->refused && fault.kind != "kill" && !found.empty()) {
            std::printf("open: %s: %s\n", name.c_str(), found.c_str());
        } else {
            report(name, found);
        }
        ++done;
    }
    std::printf("%zu of %zu fault points, seed %u\n", done, points.size(), seed);
}

void run_out_of_room(const World& before) {
    for (int free = -1; free <= 12; ++free) {  // pages; -1: read-only
        for (const Row& row : kRows) {
            if (row.holds == Holds::scan) continue;
            restore(before);
            World after = before;
            if (!row.refused) run(row.command), after = world();
            if (mount("tmpfs", kLive, "tmpfs", 0, "size=1m") != 0) return;
            restore(before);
            const std::string fill(4096, 'x');
            for (std::ofstream file("/etc/config/.fill"); file; file << fill << std::flush) {
            }
            if (free > 0)
                fs::resize_file("/etc/config/.fill",
                                fs::file_size("/etc/config/.fill") / 4096 * 4096 - free * 4096);
            if (free < 0) mount("tmpfs", kLive, "tmpfs", MS_REMOUNT | MS_RDONLY, nullptr);
            const Outcome outcome = run(row.command);
            if (free < 0) mount("tmpfs", kLive, "tmpfs", MS_REMOUNT, nullptr);
            fs::remove("/etc/config/.fill");
            report(std::string(row.name) + ", free pages " + std::to_string(free),
                   fault_of(row, {}, outcome, before, after));
            umount(kLive);
        }
    }
}

// Two at once; both end well.
void side_by_side(const char* one, const char* other, int rounds, int other_rounds) {
    const pid_t first = start({kSelf, "host", one, std::to_string(rounds)});
    const pid_t second = start({kSelf, "host", other, std::to_string(other_rounds)});
    const bool fine = outcome_of(first).code == 0;
    report(std::string(one) + " beside " + other,
           outcome_of(second).code == 0 && fine ? "" : "one ended badly");
}

void run_side_by_side(World before, bool whole) {
    restore(before);
    side_by_side("write-one", "write-two", whole ? 2000 : 200, whole ? 2000 : 200);
    run({kSelf, "host", "add-one", "1"});
    const World once = world();
    side_by_side("add-one", "add-two", whole ? 200 : 40, whole ? 200 : 40);
    report("two that add", difference(world(), once));
    restore(before);
    const std::string last = std::to_string(whole ? 4000 : 400);
    side_by_side("transactions", "write-one", whole ? 100 : 10, whole ? 4000 : 400);
    std::string& custom = before[std::string(kLive) + "/custom"];
    custom = "\n" + custom + "\toption one '" + last + "'\n\n";
    report("a writer beside transactions", difference(world(), before));
    for (const auto& [loop, rounds] :
         {std::pair{"signals", whole ? 2000 : 200}, std::pair{"often", whole ? 20000 : 2000}})
        report(loop, run({kSelf, "host", loop, std::to_string(rounds)}).code == 0 ? "" : "ended badly");
}

}  // namespace

int main(int argc, char** argv) {
    const auto word = [&](int i) { return std::string(argc > i ? argv[i] : ""); };
    if (word(1) == "host") return host::run(word(2), word(3));
    prctl(PR_SET_CHILD_SUBREAPER, 1);
    const int seconds = argc > 1 ? std::atoi(argv[1]) : 60;
    const unsigned seed = argc > 2 ? std::atoi(argv[2]) : std::random_device()();
    restore(world());
    const World before = world();
    fail_calls(before, seconds, seed);
    run_out_of_room(before);
    run_side_by_side(before, seconds == 0);
    restore(before);
    std::printf("%d failed\n", failures);
    return failures == 0 ? 0 : 1;
}

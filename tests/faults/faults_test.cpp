// Lets every call of a kind fail that some operations make, once or from then on, and kills them at every change of
// the file system; then looks at what the store holds. Around it: full and read-only stores, two at once, long loops.
//   faults_test [SECONDS] [SEED] [TEXT]   of the fault points with TEXT in their name as many as fit, in an order made
//                                         from the seed; 0 seconds: all
// holds P1, P3, P7, P8, P9, P10
#include <fcntl.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
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

constexpr const char* kHost = "/usr/lib/router/tests/faults_test";
constexpr const char* kCounts = "/var/run/fault_count";
constexpr const char* kLive = "/etc/config/";
constexpr const char* kScanResults = "/tmp/tr069/diagnostics_config";

enum class Holds { old_or_new, done_is_new, transaction, scan };

struct Row {
    const char* name;
    Words command;
    Holds holds;
    bool refused = false;  // goes back by itself
    bool is_dm = false;
};

Words host_of(const std::string& operation, int number = 0) {
    return {kHost, "host", operation, std::to_string(number)};
}

Words dm_set(Words settings) {
    settings.insert(settings.begin(), {"/usr/bin/dm", "set"});
    return settings;
}

const Words kSettings = {"Device.DeviceInfo.ProvisioningCode=changed", "Device.WiFi.SSID.2.SSID=changed",
                         "Device.DHCPv4.Server.Pool.1.MinAddress=192.168.0.110"};
const Words kRefused = {kSettings[0], kSettings[1], kSettings[2],
                        "Device.ManagementServer.STUNMinimumKeepAlivePeriod=9999999"};
const Row kRows[] = {
    {"one option", host_of("option"), Holds::old_or_new},
    {"an added mapping", host_of("add"), Holds::done_is_new},
    {"a transaction", host_of("transaction"), Holds::transaction},
    {"refused in stage", host_of("transaction", 2), Holds::transaction, true},
    {"refused in check", host_of("transaction", 3), Holds::transaction, true},
    {"refused in apply", host_of("transaction", 1), Holds::transaction, true},
    {"dm set", dm_set(kSettings), Holds::transaction, false, true},
    {"dm set, refused", dm_set(kRefused), Holds::transaction, true, true},
    {"a scan", host_of("scan"), Holds::scan},
};

struct Fault {
    int kind = -1;
    int at = 0;
    bool lasts = false;
};

struct Outcome {
    int code = 0;
    int signal = 0;
    int calls[host::kKinds] = {};
};

std::string text_of(const std::string& path) {
    std::stringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

void write_text(const std::string& path, const std::string& text) { std::ofstream(path) << text; }

World world() {
    World files = {{kScanResults, text_of(kScanResults)}};
    std::error_code none;
    for (const char* directory : {kLive, "/tmp/cwmp-config/", "/tmp/cwmp-config-force/"})
        for (const auto& entry : fs::directory_iterator(directory, none))
            if (entry.path().filename().native()[0] != '.') files[entry.path()] = text_of(entry.path());
    // The check script writes its packages with other blank lines than the library.
    for (const char* name : {"smartip_sync", "network", "dhcp_server_sync"}) {
        std::string& text = files[std::string(kLive) + name];
        for (std::size_t at = 0; (at = text.find("\n\n")) != std::string::npos;) text.erase(at, 1);
        text.erase(0, text.find_first_not_of('\n'));
    }
    return files;
}

std::string difference(const World& is, const World& wanted) {
    World all = is;
    all.insert(wanted.begin(), wanted.end());
    const auto text = [](const World& files, const auto& path) {
        return files.contains(path) ? files.at(path) : "";
    };
    std::string names;
    for (const auto& [path, ignored] : all)
        if (text(is, path) != text(wanted, path)) names += ' ' + path;
    return names;
}

void restore(const World& files) {
    std::error_code none;
    for (const char* path : {kLive, "/tmp/cwmp-config/", "/tmp/cwmp-config-force/"})
        for (const auto& entry : fs::directory_iterator(path, none)) fs::remove(entry.path(), none);
    for (const char* path : {"/tmp/cwmp-config", "/tmp/cwmp-config-force", "/tmp/tr069/.transaction",
                             "/tmp/.uci", "/tmp/ready_to_revert_item", "/var/state", "/dev/console"})
        fs::remove_all(path, none);
    fs::create_directory("/var/state", none);
    write_text("/dev/console", "");
    for (const auto& [path, text] : files) {
        fs::create_directory(fs::path(path).parent_path(), none);
        write_text(path, text);
    }
}

pid_t start(const Words& command, const Fault& fault = {}, bool from_start = false) {
    const pid_t child = fork();
    if (child != 0) return child;
    if (fault.kind >= 0) {
        std::stringstream text;
        text << fault.kind << ' ' << fault.at << ' ' << fault.lasts << ' ' << from_start << ' ' << kCounts;
        setenv("LD_PRELOAD", "/usr/lib/router/tests/failing_calls.so", 1);
        setenv("FAULT", text.str().c_str(), 1);
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
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, WIFSIGNALED(status) ? WTERMSIG(status) : 0};
}

// With its jobs to their end.
Outcome run(const Words& command, const Fault& fault = {}, bool from_start = false) {
    write_text(kCounts, std::string(sizeof Outcome::calls, '\0'));
    Outcome outcome = outcome_of(start(command, fault, from_start));
    while (waitpid(-1, nullptr, 0) > 0) {
    }
    std::ifstream(kCounts).read(reinterpret_cast<char*>(outcome.calls), sizeof outcome.calls);
    return outcome;
}

int recover() { return run(host_of("recover")).code; }

// Every network that is listed is one that a whole scan lists.
std::string scan_fault(const World& is, const World& old, const World& wanted) {
    const std::string &results = is.at(kScanResults), &whole = wanted.at(kScanResults);
    for (std::size_t at = 0; (at = results.find("config Cell", at)) != std::string::npos; ++at) {
        const std::size_t facts = results.find('\n', at);  // the number may be another one
        const auto cell = results.substr(facts, results.find("\n\n", at) - facts);
        if (whole.find(cell + "\n\n") == std::string::npos) return "part of a network: " + cell;
    }
    return results == old.at(kScanResults) || results.ends_with("'\n\n") ? "" : "the results are cut off";
}

// What is wrong after a run; nothing if nothing is.
std::string fault_of(const Row& row, const Fault& fault, const Outcome& run, const World& old,
                     const World& wanted) {
    const bool killed = run.signal != 0;
    if (killed && fault.kind != host::kKill && fault.kind != host::kMalloc)
        return "died of signal " + std::to_string(run.signal);
    const World now = world();
    const auto is_old = [&](const World& is) {
        return difference(is, old).empty() ? "" : "not done, but changed:" + difference(is, old);
    };
    const auto is_either = [&](const World& is) { return difference(is, wanted).empty() ? "" : is_old(is); };
    if (row.holds == Holds::scan) return scan_fault(now, old, wanted);
    if (row.holds == Holds::old_or_new || (killed && row.holds == Holds::done_is_new)) return is_either(now);
    const bool done = !killed && run.code == host::kDone;
    if (done && !difference(now, wanted).empty()) return "done, but not new:" + difference(now, wanted);
    if (row.holds == Holds::done_is_new) return done ? "" : is_old(now);
    const int recovered = recover();
    if (recovered == host::kNotUndone) return "cannot be recovered";
    if (done) return recovered == host::kDone ? "" : "done, and then undone";
    if (!killed && !row.is_dm && run.code != host::kNotUndone)
        return recovered == host::kDone ? is_old(now) : "ended, but still to be recovered";
    return recovered == host::kUndone ? is_old(world()) : is_either(world());
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

    std::string name() const {
        return std::string(row->name) + ", " + host::kNames[fault.kind] + ' ' + std::to_string(fault.at) +
               (fault.lasts ? " on" : "");
    }
};

std::vector<Point> fault_points(const World& old, std::map<const Row*, World>& wanted) {
    constexpr int kMostMalloc = 60;
    std::vector<Point> points;
    for (const Row& row : kRows) {
        restore(old);
        const Outcome counted = run(row.command, {host::kOpen}, row.is_dm);
        wanted[&row] = row.refused ? old : world();
        report(row.name, (counted.code != 0) == row.refused ? fault_of(row, {}, counted, old, wanted[&row])
                                                            : "ended with " + std::to_string(counted.code));
        for (int kind = 0; kind < host::kKinds; ++kind) {
            if (kind == host::kMalloc && row.is_dm) continue;
            const int step = kind == host::kMalloc ? counted.calls[kind] / kMostMalloc + 1 : 1;
            for (int at = 1; at <= counted.calls[kind]; at += step)
                for (const bool lasts : {false, true})
                    if (!lasts || kind != host::kKill) points.push_back({&row, {kind, at, lasts}});
        }
    }
    return points;
}

// As the seed has it, but of each row and kind some come early.
void mix(std::vector<Point>& points, unsigned seed) {
    std::shuffle(points.begin(), points.end(), std::mt19937(seed));
    std::map<std::pair<const Row*, int>, int> met;
    std::multimap<int, Point> ranked;
    for (const Point& point : points) ranked.emplace(met[{point.row, point.fault.kind}]++, point);
    std::transform(ranked.begin(), ranked.end(), points.begin(),
                   [](const auto& each) { return each.second; });
}

void fail_calls(const World& old, int seconds, unsigned seed, const std::string& text) {
    std::map<const Row*, World> wanted;
    auto points = fault_points(old, wanted);
    mix(points, seed);
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
    std::size_t done = 0;
    for (const Point& point : points) {
        if (seconds > 0 && std::chrono::steady_clock::now() > end) break;
        if (point.name().find(text) == std::string::npos) continue;
        restore(old);
        const Outcome outcome = run(point.row->command, point.fault, point.row->is_dm);
        report(point.name(), fault_of(*point.row, point.fault, outcome, old, wanted[point.row]));
        ++done;
    }
    std::printf("%zu of %zu fault points, seed %u\n", done, points.size(), seed);
}

void run_out_of_room(const World& old) {
    constexpr int kPage = 4096;
    const std::string filler = std::string(kLive) + ".fill";
    for (int free = -1; free <= 12; ++free) {  // pages; -1: read-only
        for (const Row& row : kRows) {
            if (row.holds == Holds::scan) continue;
            restore(old);
            if (!row.refused) run(row.command);
            const World wanted = row.refused ? old : world();
            if (mount("tmpfs", kLive, "tmpfs", 0, "size=1m") != 0) return;
            restore(old);
            for (std::ofstream file(filler); file; file << std::string(kPage, 'x') << std::flush) {
            }
            fs::resize_file(filler, fs::file_size(filler) / kPage * kPage - std::max(free, 0) * kPage);
            if (free < 0) mount("tmpfs", kLive, "tmpfs", MS_REMOUNT | MS_RDONLY, nullptr);
            const Outcome outcome = run(row.command);
            if (free < 0) mount("tmpfs", kLive, "tmpfs", MS_REMOUNT, nullptr);
            fs::remove(filler);
            report(std::string(row.name) + ", free pages " + std::to_string(free),
                   fault_of(row, {}, outcome, old, wanted));
            umount(kLive);
        }
    }
}

// Two at once; whether each ends as it must.
bool side_by_side(const Words& one, const Words& other, bool other_is_refused = false) {
    const pid_t first = start(one), second = start(other);
    const bool done = outcome_of(first).code == 0;
    return (outcome_of(second).code != 0) == other_is_refused && done;
}

// Each answer is true of what the store then holds. The script refuses a subnet's own address.
void set_the_lan_side_by_side(const World& old, int rounds) {
    restore(old);
    for (int i = 1; i <= rounds; ++i) {
        const std::string lan =
            "Device.IP.Interface.1.IPv4Address.1.IPAddress=192.168." + std::to_string(i % 200);
        const bool true_answers = side_by_side(dm_set({lan + ".1"}), dm_set({lan + ".0"}), true);
        const World now = world();
        for (const char* package : {"smartip_sync", "network"})
            if (!true_answers ||
                now.at(std::string(kLive) + package).find(lan.substr(lan.find("192")) + ".1'") ==
                    std::string::npos)
                return report("a LAN address beside a refused one", "round " + std::to_string(i));
    }
}

void run_side_by_side(const World& old, int times) {
    const auto both = [](const char* what, const Words& one, const Words& other) {
        report(what, side_by_side(one, other) ? "" : "one ended badly");
    };
    restore(old);
    both("two that write", host_of("write-one", 200 * times), host_of("write-two", 200 * times));
    run(host_of("add-one", 1));
    const World once = world();
    both("two that add", host_of("add-one", 20 * times), host_of("add-two", 20 * times));
    report("two that add", difference(world(), once));
    restore(old);
    both("a writer beside transactions", host_of("transactions", 10 * times),
         host_of("write-one", 400 * times));
    World wanted = old;
    std::string& custom = wanted[std::string(kLive) + "custom"];
    custom = "\n" + custom + "\toption one '" + std::to_string(400 * times) + "'\n\n";
    report("a writer beside transactions", difference(world(), wanted));
    set_the_lan_side_by_side(old, 20 * times);
    for (const auto& [loop, rounds] : {std::pair{"signals", 200 * times}, std::pair{"often", 2000 * times}})
        report(loop, run(host_of(loop, rounds)).code == 0 ? "" : "ended badly");
}

}  // namespace

int main(int argc, char** argv) {
    const auto word = [&](int i) { return std::string(argc > i ? argv[i] : ""); };
    if (word(1) == "host") return host::run(word(2), word(3));
    prctl(PR_SET_CHILD_SUBREAPER, 1);
    const int seconds = argc > 1 ? std::atoi(argv[1]) : 60;
    const unsigned seed = argc > 2 ? std::atoi(argv[2]) : std::random_device()();
    const World old = world();
    restore(old);
    fail_calls(old, seconds, seed, word(3));
    if (word(3).empty()) {
        run_out_of_room(old);
        run_side_by_side(old, seconds == 0 ? 10 : 1);
    }
    restore(old);
    std::printf("%d failed\n", failures);
    return failures == 0 ? 0 : 1;
}

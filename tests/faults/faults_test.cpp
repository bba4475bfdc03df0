// Lets every call of a kind fail that some operations make, once or from then on, and kills them at every change of
// the file system; then looks at what the store holds. Around it: full and read-only stores, two at once, long loops.
//   faults_test [SECONDS] [SEED] [TEXT]   of the fault points with TEXT in their name as many as fit, in an order made
//                                         from the seed; 0 seconds: all
// holds P1, P3, P7, P8, P9, P10
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "host.h"

namespace {

namespace fs = std::filesystem;
using std::to_string;
using World = std::map<std::string, std::string>;

const std::string kHost = "/usr/lib/router/tests/faults_test host ";
const std::string kDmSet = "/usr/bin/dm set ";
const std::string kSettings = kDmSet +
                              "Device.DeviceInfo.ProvisioningCode=changed Device.WiFi.SSID.2.SSID=changed "
                              "Device.DHCPv4.Server.Pool.1.MinAddress=192.168.0.110 ";
const std::string kLive = "/etc/config/";
const std::string kCopies = "/tmp/cwmp-config";
constexpr const char* kCounts = "/var/run/fault_count";
constexpr const char* kScanResults = "/tmp/tr069/diagnostics_config";

enum class Holds { old_or_new, done_is_new, transaction, scan };

struct Row {
    const char* name;
    std::string command;
    Holds holds;
    bool refused = false;  // goes back by itself
    bool is_dm = false;
};

const Row kRows[] = {
    {"one option", kHost + "option", Holds::old_or_new},
    {"an added mapping", kHost + "add", Holds::done_is_new},
    {"a transaction", kHost + "transaction", Holds::transaction},
    {"refused in stage", kHost + "transaction 2", Holds::transaction, true},
    {"refused in check", kHost + "transaction 3", Holds::transaction, true},
    {"refused in apply", kHost + "transaction 1", Holds::transaction, true},
    {"dm set", kSettings, Holds::transaction, false, true},
    {"dm set, refused", kSettings + "Device.ManagementServer.STUNMinimumKeepAlivePeriod=9999999",
     Holds::transaction, true, true},
    {"a scan", kHost + "scan", Holds::scan},
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
    std::ifstream file(path);
    return {std::istreambuf_iterator(file), {}};
}

World world() {
    World files = {{kScanResults, text_of(kScanResults)}};
    std::error_code none;
    for (const std::string& directory : {kLive, kCopies, kCopies + "-force"})
        for (const auto& entry : fs::directory_iterator(directory, none))
            if (entry.path().filename().native()[0] != '.') files[entry.path()] = text_of(entry.path());
    // The check script writes its packages with other blank lines than the library.
    for (const char* name : {"smartip_sync", "network", "dhcp_server_sync"}) {
        std::string& text = files[kLive + name];
        for (std::size_t at = 0; (at = text.find("\n\n")) != std::string::npos;) text.erase(at, 1);
        text.erase(0, text.find_first_not_of('\n'));
    }
    return files;
}

void put(const World& files) {
    std::error_code none;
    for (const auto& [path, text] : files) {
        fs::create_directory(fs::path(path).parent_path(), none);
        std::ofstream(path) << text;
    }
}

void restore(const World& files) {
    std::error_code none;
    umount(kLive.c_str());
    for (const auto& entry : fs::directory_iterator(kLive)) fs::remove(entry.path());
    for (const char* path : {"/tmp/cwmp-config", "/tmp/cwmp-config-force", "/tmp/tr069/.transaction",
                             "/tmp/.uci", "/tmp/ready_to_revert_item", "/var/state", "/dev/console"})
        fs::remove_all(path, none);
    fs::create_directory("/var/state", none);
    std::ofstream("/dev/console");
    put(files);
}

// The paths that do not hold the same; a side copy that is empty is none.
std::string difference(World is, World wanted) {
    World all = is;
    all.insert(wanted.begin(), wanted.end());
    std::string names;
    for (const auto& [path, text] : all)
        if (is[path] != wanted[path]) names += ' ' + path;
    return names;
}

pid_t start(const std::string& command, const Fault& fault = {}, bool from_start = false) {
    const pid_t child = fork();
    if (child != 0) return child;
    std::ostringstream line;
    if (fault.kind >= 0 && fault.kind != host::kRoom)
        line << "LD_PRELOAD=/usr/lib/router/tests/failing_calls.so FAULT='" << fault.kind << ' ' << fault.at
             << ' ' << fault.lasts << ' ' << from_start << ' ' << kCounts << "' ";
    line << "exec " << command << " >>/var/run/fault_output 2>&1";
    execl("/bin/sh", "sh", "-c", line.str().c_str(), nullptr);
    _exit(127);
}

Outcome outcome_of(pid_t child) {
    int status = 0;
    waitpid(child, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, WIFSIGNALED(status) ? WTERMSIG(status) : 0};
}

// With its jobs to their end.
Outcome run(const std::string& command, const Fault& fault = {}, bool from_start = false) {
    std::ofstream(kCounts) << std::string(sizeof Outcome::calls, '\0');
    Outcome outcome = outcome_of(start(command, fault, from_start));
    while (waitpid(-1, nullptr, 0) > 0) {
    }
    std::ifstream(kCounts).read(reinterpret_cast<char*>(outcome.calls), sizeof outcome.calls);
    return outcome;
}

// Every network that is listed is one that a whole scan lists.
std::string scan_fault(const std::string& results, const std::string& old, const std::string& whole) {
    for (std::size_t at = 0; (at = results.find("config Cell", at)) != std::string::npos; ++at) {
        const std::size_t facts = results.find('\n', at);  // the number may be another one
        const auto cell = results.substr(facts, results.find("\n\n", at) - facts);
        if (whole.find(cell + "\n\n") == std::string::npos) return "part of a network: " + cell;
    }
    return results == old || results.ends_with("'\n\n") ? "" : "the results are cut off";
}

// What is wrong after a run; nothing if nothing is.
std::string fault_of(const Row& row, const Fault& fault, const Outcome& run, const World& old,
                     const World& wanted) {
    const bool killed = run.signal != 0;
    if (killed && fault.kind != host::kKill && fault.kind != host::kMalloc)
        return "died of " + to_string(run.signal);
    // What asks for side copies may be unreadable.
    const bool copies_count = fault.kind != host::kOpen && fault.kind != host::kMalloc;
    const auto counted = [copies_count](World files) {
        std::erase_if(files, [&](auto& file) { return !copies_count && file.first.starts_with(kCopies); });
        return files;
    };
    const auto from_new = [&](const World& is) { return difference(counted(is), counted(wanted)); };
    const auto is_old = [&](const World& is) {
        return difference(is, old).empty() ? "" : "not done, but changed:" + difference(is, old);
    };
    const auto is_either = [&](const World& is) { return from_new(is).empty() ? "" : is_old(is); };
    World now = world();
    if (row.holds == Holds::scan)
        return scan_fault(now[kScanResults], old.at(kScanResults), wanted.at(kScanResults));
    if (row.holds == Holds::old_or_new || (killed && row.holds == Holds::done_is_new)) return is_either(now);
    const bool done = !killed && run.code == host::kDone;
    if (done && !from_new(now).empty()) return "done, but not new:" + from_new(now);
    if (row.holds == Holds::done_is_new) return done ? "" : is_old(now);
    const int recovered = ::run(kHost + "recover").code;
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
    std::cout << "FAILED " << what << ": " << fault << std::endl;
}

struct Point {
    const Row* row;
    Fault fault;

    std::string name() const {
        const auto& [kind, at, lasts] = fault;
        return std::string(row->name) + ", " + host::kNames[kind] + ' ' + to_string(at) +
               (lasts ? " on" : "");
    }
};

std::vector<Point> fault_points(const World& old, std::map<const Row*, World>& wanted) {
    constexpr int kMostMalloc = 60, kMostRoom = 14;
    std::vector<Point> points;
    for (const Row& row : kRows) {
        restore(old);
        Outcome counted = run(row.command, {host::kOpen}, row.is_dm);
        wanted[&row] = row.refused ? old : world();
        report(row.name, (counted.code != 0) == row.refused ? fault_of(row, {}, counted, old, wanted[&row])
                                                            : "ended with " + to_string(counted.code));
        for (int kind = 0; kind < host::kKinds; ++kind) {
            if (kind == host::kMalloc && row.is_dm) continue;
            if (kind == host::kRoom && row.holds != Holds::scan) counted.calls[kind] = kMostRoom;
            const int step = kind == host::kMalloc ? counted.calls[kind] / kMostMalloc + 1 : 1;
            for (int at = 1; at <= counted.calls[kind]; at += step)
                for (const bool lasts : {false, true})
                    if (!lasts || (kind != host::kKill && kind != host::kRoom))
                        points.push_back({&row, {kind, at, lasts}});
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

const std::string kFiller = kLive + ".fill";

// Leaves the store so many free pages, with -1 it is read-only; until restore() it lies elsewhere.
void leave_room(const World& files, int free) {
    constexpr int kPage = 4096;
    mount("tmpfs", kLive.c_str(), "tmpfs", 0, "size=1m");
    put(files);
    for (std::ofstream file(kFiller); file; file << std::string(kPage, 'x') << std::flush) {
    }
    fs::resize_file(kFiller, fs::file_size(kFiller) / kPage * kPage - std::max(free, 0) * kPage);
    if (free < 0) mount("tmpfs", kLive.c_str(), "tmpfs", MS_REMOUNT | MS_RDONLY, nullptr);
}

void give_room() {
    mount("tmpfs", kLive.c_str(), "tmpfs", MS_REMOUNT, nullptr);
    fs::remove(kFiller);
}

void fail_calls(const World& old, int seconds, unsigned seed, const std::string& text) {
    std::map<const Row*, World> wanted;
    auto points = fault_points(old, wanted);
    mix(points, seed);
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
    int done = 0;
    for (const Point& point : points) {
        if (seconds > 0 && std::chrono::steady_clock::now() > end) break;
        if (point.name().find(text) == std::string::npos) continue;
        const bool is_full = point.fault.kind == host::kRoom;
        restore(old);
        if (is_full) leave_room(old, point.fault.at - 2);
        const Outcome outcome = run(point.row->command, point.fault, point.row->is_dm);
        if (is_full) give_room();
        report(point.name(), fault_of(*point.row, point.fault, outcome, old, wanted[point.row]));
        ++done;
    }
    std::cout << done << " of " << points.size() << " fault points, seed " << seed << '\n';
}

// Two at once; whether each ends as it must.
bool side_by_side(const std::string& one, const std::string& other, bool other_is_refused = false) {
    const pid_t first = start(one), second = start(other);
    const bool done = outcome_of(first).code == 0;
    return (outcome_of(second).code != 0) == other_is_refused && done;
}

// The script refuses a subnet's own address.
bool beside_a_refused(int round) {
    const std::string lan = "192.168." + to_string(round % 200);
    const std::string set = kDmSet + "Device.IP.Interface.1.IPv4Address.1.IPAddress=" + lan;
    if (!side_by_side(set + ".1", set + ".0", true)) return false;
    const std::string stored = text_of(kLive + "network") + text_of(kLive + "smartip_sync");
    return stored.find("ipaddr '" + lan + ".1'") != std::string::npos &&
           stored.find("lanip '" + lan + ".1'") != std::string::npos;
}

void run_side_by_side(const World& old, int times) {
    const auto often = [times](const char* operation, int rounds, const char* name = "") {
        return kHost + operation + ' ' + to_string(rounds * times) + ' ' + name;
    };
    const auto ends = [](const char* what, bool well) { report(what, well ? "" : "ended badly"); };
    restore(old);
    ends("two that write", side_by_side(often("write", 200, "one"), often("write", 200, "two")));
    run(kHost + "map 1 one");
    const World once = world();
    ends("two that add", side_by_side(often("map", 20, "one"), often("map", 20, "two")));
    report("two that add", difference(world(), once));
    restore(old);
    ends("transactions and a writer", side_by_side(often("refused", 10), often("write", 400, "one")));
    World wanted = old;
    std::string& custom = wanted[kLive + "custom"];
    custom = "\n" + custom + "\toption one '" + to_string(400 * times) + "'\n\n";
    report("transactions and a writer", difference(world(), wanted));
    restore(old);
    for (int round = 1; round <= 20 * times; ++round)
        ends("a LAN address beside a refused one", beside_a_refused(round));
    ends("scans beside popen", run(often("scan", 5, "popen")).code == 0);
    ends("signals", run(often("read", 200)).code == 0);
    ends("often", run(often("often", 2000)).code == 0);
}

}  // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> words(argv + 1, argv + argc);
    const auto word = [&](std::size_t i) { return words.size() > i ? words[i] : ""; };
    if (word(0) == "host") return host::run(word(1), word(2), word(3));
    prctl(PR_SET_CHILD_SUBREAPER, 1);
    const int seconds = words.empty() ? 60 : std::atoi(word(0).c_str());
    const World old = world();
    fail_calls(old, seconds, words.size() > 1 ? std::atoi(word(1).c_str()) : std::random_device()(), word(2));
    if (word(2).empty()) run_side_by_side(old, seconds == 0 ? 10 : 1);
    restore(old);
    std::cout << failures << " failed\n";
    return failures == 0 ? 0 : 1;
}

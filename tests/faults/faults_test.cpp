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
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "host.h"
#include "rows.h"
#include "store.h"

namespace {

namespace fs = std::filesystem;
using std::to_string;
using stores::text_of;
using World = std::map<std::string, std::string>;

const std::string kHost = "/usr/lib/router/tests/faults_test host ";
const std::string kDmSet = "/usr/bin/dm set ";
// Its own exit code does not tell whether all was undone.
const std::string kDmSetAll = kDmSet +
                              "Device.DeviceInfo.ProvisioningCode=changed Device.WiFi.SSID.2.SSID=changed "
                              "Device.DHCPv4.Server.Pool.1.MinAddress=192.168.0.110 || exit $(($? > 128 ? $? : 2))";
static_assert(host::kNotUndone == 2);
const std::string kLive = "/etc/config/";
const std::string kCopies = "/tmp/cwmp-config";
constexpr const char* kScanResults = "/tmp/tr069/diagnostics_config";

// What is there is the old or the new, and is so as the operation answered; a scan lists whole networks.
enum class Holds { either, answer, scan };

struct Row {
    const char* name;
    std::string command;
    Holds holds;
    bool refused = false;  // goes back by itself
    World wanted = {};     // what is there when no call fails
};

Row operations[] = {
    {"one option", kHost + "option", Holds::either},
    {"an added mapping", kHost + "add", Holds::answer},
    {"a transaction", kHost + "transaction", Holds::answer},
    {"refused in stage", kHost + "transaction 2", Holds::answer, true},
    {"refused in check", kHost + "transaction 3", Holds::answer, true},
    {"refused in apply", kHost + "transaction 1", Holds::answer, true},
    {"dm set", kDmSetAll, Holds::answer},
    {"a scan", kHost + "scan", Holds::scan},
};

// The call of a kind that fails when a row's command is run.
struct Point {
    Row* row;
    int kind;
    int at = 0;
    bool lasts = false;

    std::string name() const {
        return std::string(row->name) + ", " + host::kNames[kind] + ' ' + to_string(at) + (lasts ? " on" : "");
    }
};

World old;
int failures = 0;

void report(const std::string& what, const std::string& fault) {
    if (fault.empty()) return;
    ++failures;
    std::cout << "FAILED " << what << ": " << fault << std::endl;
}

// The packages without blank lines: the check script writes others than the library.
World world() {
    World files = {{kScanResults, text_of(kScanResults)}};
    std::error_code none;
    for (const std::string& directory : {kLive, kCopies, kCopies + "-force"})
        for (const fs::path& package : fs::directory_iterator(directory, none))
            if (package.filename().native()[0] != '.')
                files[package] = rows::joined(rows::split(text_of(package), "\n"), "\n");
    return files;
}

void restore() {
    umount(kLive.c_str());
    stores::reset();
}

// The paths that do not hold the same; a side copy that is empty is none.
std::string difference(World is, World wanted, bool copies_count = true) {
    World all = is;
    all.insert(wanted.begin(), wanted.end());
    std::string names;
    for (const auto& [path, text] : all)
        if (is[path] != wanted[path] && (copies_count || !path.starts_with(kCopies))) names += ' ' + path;
    return names;
}

// Its exit code, as the shell tells it of a process that was killed, too; with its jobs to their end.
int run(const std::string& command) {
    const int status = std::system(("{ " + command + "; } >>/var/run/fault_output 2>&1; exit $?").c_str());
    while (waitpid(-1, nullptr, 0) > 0) {
    }
    return WEXITSTATUS(status);
}

int run(const Point& point) {
    const auto& [row, kind, at, lasts] = point;
    if (kind == host::kRoom) return run(row->command);
    std::ofstream(host::kCounts) << std::string(host::kKinds * sizeof(int), '\0');
    const std::string fault = to_string(kind) + ' ' + to_string(at) + ' ' + to_string(int{lasts});
    return run("LD_PRELOAD=/usr/lib/router/tests/failing_calls.so FAULT='" + fault + "' " + row->command);
}

// Every network that is listed is one that a whole scan lists.
std::string scan_fault(const std::string& results, const std::string& whole) {
    for (std::size_t at = 0; (at = results.find("config Cell", at)) != std::string::npos; ++at) {
        const std::size_t facts = results.find('\n', at);  // the number may be another one
        const auto cell = results.substr(facts, results.find("\n\n", at) - facts);
        if (whole.find(cell + "\n\n") == std::string::npos) return "part of a network: " + cell;
    }
    return results == old[kScanResults] || results.ends_with("'\n\n") ? "" : "the results are cut off";
}

std::string is_old(const World& is) {
    const std::string names = difference(is, old);
    return names.empty() ? "" : "not done, but changed:" + names;
}

// What is wrong after a run; nothing if nothing is.
std::string fault_of(const Point& point, int code) {
    Row& row = *point.row;
    const bool killed = code > 128, done = code == host::kDone;
    const bool no_memory = point.kind == host::kMalloc;
    if (killed && point.kind != host::kKill && !no_memory) return "died of " + to_string(code - 128);
    World now = world();
    if (row.holds == Holds::scan) return scan_fault(now[kScanResults], row.wanted[kScanResults]);
    // What asks for side copies may be unreadable.
    const auto from_new = [&](const World& is) {
        return difference(is, row.wanted, point.kind != host::kOpen && !no_memory);
    };
    const auto is_either = [&](const World& is) { return from_new(is).empty() ? "" : is_old(is); };
    if (row.holds == Holds::either) return is_either(now);
    if (done && !from_new(now).empty()) return "done, but not new:" + from_new(now);
    const int recovered = run(kHost + "recover");
    if (recovered == host::kNotUndone) return "cannot be recovered";
    if (done) return recovered == host::kDone ? "" : "done, and then undone";
    if (!killed && code != host::kNotUndone)
        return recovered == host::kDone ? is_old(now) : "ended, but still to be recovered";
    return recovered == host::kUndone ? is_old(world()) : is_either(world());
}

// In the order of their keys: of each row and kind some come early, else as the seed has it.
auto fault_points(unsigned seed) {
    constexpr int kMostMalloc = 60, kMostRoom = 14;
    std::mt19937 random(seed);
    std::multimap<std::pair<std::size_t, unsigned>, Point> points;
    for (Row& row : operations) {
        restore();
        const Point nowhere = {&row, host::kOther};
        const int code = run(nowhere);
        row.wanted = row.refused ? old : world();
        int calls[host::kKinds] = {};
        std::ifstream(host::kCounts).read(reinterpret_cast<char*>(calls), sizeof calls);
        report(row.name, (code != 0) == row.refused ? fault_of(nowhere, code) : "ended with " + to_string(code));
        if (row.holds != Holds::scan) calls[host::kRoom] = kMostRoom;
        for (int kind = 0; kind < host::kKinds; ++kind) {
            const int step = kind == host::kMalloc ? calls[kind] / kMostMalloc + 1 : 1;
            std::vector<Point> of_kind;
            for (int at = 1; at <= calls[kind]; at += step) {
                of_kind.push_back({&row, kind, at});
                if (kind != host::kKill && kind != host::kRoom) of_kind.push_back({&row, kind, at, true});
            }
            std::shuffle(of_kind.begin(), of_kind.end(), random);
            for (std::size_t i = 0; i < of_kind.size(); ++i) points.emplace(std::pair(i, random()), of_kind[i]);
        }
    }
    return points;
}

const std::string kFiller = kLive + ".fill";

// Leaves the store so many free pages, with -1 it is read-only; until restore() it lies elsewhere.
void leave_room(int free) {
    constexpr int kPage = 4096;
    mount("tmpfs", kLive.c_str(), "tmpfs", 0, "size=1m");
    stores::reset();
    for (std::ofstream file(kFiller); file; file << std::string(kPage, 'x') << std::flush) {
    }
    fs::resize_file(kFiller, fs::file_size(kFiller) / kPage * kPage - std::max(free, 0) * kPage);
    if (free < 0) mount("tmpfs", kLive.c_str(), "tmpfs", MS_REMOUNT | MS_RDONLY, nullptr);
}

void give_room() {
    mount("tmpfs", kLive.c_str(), "tmpfs", MS_REMOUNT, nullptr);
    fs::remove(kFiller);
}

void fail_calls(int seconds, unsigned seed, const std::string& text) {
    const auto points = fault_points(seed);
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
    int done = 0;
    for (const auto& [order, point] : points) {
        if (seconds > 0 && std::chrono::steady_clock::now() > end) break;
        if (point.name().find(text) == std::string::npos) continue;
        restore();
        if (point.kind == host::kRoom) leave_room(point.at - 2);
        const int code = run(point);
        if (point.kind == host::kRoom) give_room();
        report(point.name(), fault_of(point, code));
        ++done;
    }
    std::cout << done << " of " << points.size() << " fault points, seed " << seed << '\n';
}

// Two at once; whether each ends as it must.
bool side_by_side(const std::string& one, const std::string& other) {
    return run(one + " & " + other + " && wait $!") == 0;
}

// The script refuses a subnet's own address.
bool beside_a_refused(int round) {
    const std::string lan = "192.168." + to_string(round % 200);
    const std::string set = kDmSet + "Device.IP.Interface.1.IPv4Address.1.IPAddress=" + lan;
    if (!side_by_side(set + ".1", "! " + set + ".0")) return false;
    const std::string stored = text_of(kLive + "network") + text_of(kLive + "smartip_sync");
    return stored.find("ipaddr '" + lan + ".1'") != std::string::npos &&
           stored.find("lanip '" + lan + ".1'") != std::string::npos;
}

void run_side_by_side(int times) {
    const auto often = [times](const char* operation, int rounds, const char* name = "") {
        return kHost + operation + ' ' + to_string(rounds * times) + ' ' + name;
    };
    const auto ends = [](const char* what, bool well) { report(what, well ? "" : "ended badly"); };
    restore();
    ends("two that write", side_by_side(often("write", 200, "one"), often("write", 200, "two")));
    run(kHost + "map 1 one");
    const World once = world();
    ends("two that add", side_by_side(often("map", 20, "one"), often("map", 20, "two")));
    report("two that add", difference(world(), once));
    restore();
    ends("transactions and a writer", side_by_side(often("refused", 10), often("write", 400, "one")));
    World wanted = old;
    wanted[kLive + "custom"] += "\n\toption one '" + to_string(400 * times) + "'";
    report("transactions and a writer", difference(world(), wanted));
    restore();
    for (int round = 1; round <= 20 * times; ++round)
        ends("a LAN address beside a refused one", beside_a_refused(round));
    ends("scans beside popen", run(often("scan", 5, "popen")) == 0);
    ends("signals", run(often("read", 200)) == 0);
    ends("often", run(often("often", 2000)) == 0);
}

}  // namespace

int main(int argc, char** argv) {
    std::vector<std::string> words(argv + 1, argv + argc);
    words.resize(4);
    if (words[0] == "host") return host::run(words[1], words[2], words[3]);
    prctl(PR_SET_CHILD_SUBREAPER, 1);
    const int seconds = argc > 1 ? std::atoi(argv[1]) : 60;
    restore();
    old = world();
    fail_calls(seconds, argc > 2 ? std::atoi(argv[2]) : std::random_device()(), words[2]);
    if (words[2].empty()) run_side_by_side(seconds == 0 ? 10 : 1);
    restore();
    std::cout << failures << " failed\n";
    return failures == 0 ? 0 : 1;
}

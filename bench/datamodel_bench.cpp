// What the library costs over what it stands on: raw libuci, a bare popen, the dynamic loader.
//
// usage() tells how it is called; scripts/bench does, and reports the ratios.
#include <benchmark/benchmark.h>
#include <dlfcn.h>
#include <sys/wait.h>
#include <uci.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "cwmp/handler.h"
#include "failure.h"
#include "library.h"
#include "router_root.h"

namespace {

constexpr const char* kLibrary = "/usr/lib/libcwmp-datamodel.so";
// The same with the console written directly.
#define DIRECT_LIBRARY "/usr/lib/libcwmp-datamodel-direct.so"
constexpr const char* kCommand = "fwinfo MODEL";

bool bare_libuci_get(char* value) {
    uci_context* context = uci_alloc_context();
    uci_set_confdir(context, "/etc/config");
    uci_package* package = nullptr;
    uci_load(context, "custom", &package);
    uci_section* section = uci_lookup_section(context, package, "DeviceInfo");
    const char* text = uci_lookup_option_string(context, section, "ProvisioningCode");
    std::strcpy(value, text);
    uci_free_context(context);
    return *value != '\0';
}

void uci_get_bare(benchmark::State& state) {
    std::vector<char> value(CWMP_VALUE_SIZE);
    for (auto unused : state) benchmark::DoNotOptimize(bare_libuci_get(value.data()));
}
BENCHMARK(uci_get_bare);

void uci_get_handler(benchmark::State& state) {
    const cwmp::Library library(kLibrary);
    std::vector<char> value(CWMP_VALUE_SIZE);
    const auto handler = library.find("DeviceInfo_ProvisioningCode");
    int locate[CWMP_LOCATE_SIZE] = {};
    for (auto unused : state) benchmark::DoNotOptimize(cwmp::call(handler, CWMP_OP_GET, locate, value.data()));
}
BENCHMARK(uci_get_handler);

void command_bare(benchmark::State& state) {
    char line[100];
    for (auto unused : state) {
        FILE* pipe = popen(kCommand, "r");
        benchmark::DoNotOptimize(std::fgets(line, sizeof line, pipe));
        pclose(pipe);
    }
}
BENCHMARK(command_bare)->UseRealTime();

void command_handler(benchmark::State& state) {
    const cwmp::Library library(kLibrary);
    std::vector<char> value(CWMP_VALUE_SIZE);
    const auto handler = library.find("DeviceInfo_ModelName");
    int locate[CWMP_LOCATE_SIZE] = {};
    for (auto unused : state) benchmark::DoNotOptimize(cwmp::call(handler, CWMP_OP_GET, locate, value.data()));
}
BENCHMARK(command_handler)->UseRealTime();

// Loads the library and looks every exported name up, as an agent does at start.
void load_and_look_up(benchmark::State& state, const std::vector<std::string>& names) {
    for (auto unused : state) {
        const cwmp::Library library(kLibrary);
        for (const auto& name : names) benchmark::DoNotOptimize(library.find(name));
    }
    state.counters["names"] = static_cast<double>(names.size());
}

// In a process-id namespace of its own the difference of two process ids is the number of processes started.
pid_t next_process() {
    const pid_t child = fork();
    if (child == 0) _exit(0);
    waitpid(child, nullptr, 0);
    return child;
}

// Of both trees; one parameter after the other, or as a bulk read, with either way to the console.
void walk(benchmark::State& state, const std::string& name, const std::string& options) {
    const std::string command =
        "/usr/bin/dm " + options + " get Device. InternetGatewayDevice. >/tmp/walk-" + name + " 2>/dev/null";
    pid_t started = 0;
    for (auto unused : state) {
        const pid_t before = next_process();
        if (std::system(command.c_str()) != 0) state.SkipWithError("dm failed");
        started = next_process() - before - 1;
    }
    state.counters["processes"] = static_cast<double>(started);
}
#define WALK(name, options) BENCHMARK_CAPTURE(walk, name, #name, options)->UseRealTime()->Unit(benchmark::kMillisecond)
WALK(plain, "--live");
WALK(bulk, "");
WALK(plain_direct, "--live --library " DIRECT_LIBRARY);
WALK(bulk_direct, "--library " DIRECT_LIBRARY);

std::vector<std::string> read_words(const std::string& file) {
    std::ifstream words(file);
    return {std::istream_iterator<std::string>(words), {}};
}

int repeat(std::string_view what, int count) {
    const cwmp::Library library(kLibrary);
    const auto handler = library.find("DeviceInfo_ProvisioningCode");
    std::vector<char> value(CWMP_VALUE_SIZE);
    int locate[CWMP_LOCATE_SIZE] = {};
    for (int i = 0; i < count; ++i) {
        if (what == "libuci") bare_libuci_get(value.data());
        if (what == "handler") cwmp::call(handler, CWMP_OP_GET, locate, value.data());
    }
    return 0;
}

int usage() {
    std::cerr << "usage: datamodel_bench ROOT NAMES-FILE [benchmark options]\n"
                 "       datamodel_bench ROOT --repeat nothing|libuci|handler COUNT\n";
    return 2;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3) return usage();
    const std::string mode = argv[2];
    const auto names = read_words(mode);
    try {
        cwmp::enter_root(argv[1]);
        if (mode == "--repeat") return argc == 5 ? repeat(argv[3], std::atoi(argv[4])) : usage();
    } catch (const cwmp::Failure& failure) {
        std::cerr << failure.subject << ": " << failure.message << '\n';
        return 1;
    }
    benchmark::RegisterBenchmark("load_and_look_up", load_and_look_up, names);
    argv[2] = argv[0];
    int count = argc - 2;
    benchmark::Initialize(&count, argv + 2);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}

#include "core/bulk_read.h"

#include <cassert>
#include <cstring>
#include <ctime>
#include <forward_list>
#include <memory>
#include <string>
#include <utility>

#include "cwmp/bulk_read.h"

namespace cwmp {
namespace {

constexpr time_t kLongest = 60;  // seconds

time_t seconds() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec;
}

struct Kept {
    std::string command;
    std::string output;
};

struct BulkRead {
    time_t begun = seconds();
    std::size_t bytes = 0;
    std::forward_list<Kept> commands;
    std::size_t package_bytes = 0;
    ForgetPackages forget = nullptr;

    void forget_packages() {
        if (forget != nullptr) forget();
        bytes -= package_bytes;
        package_bytes = 0;
    }
    ~BulkRead() { forget_packages(); }
};

std::unique_ptr<BulkRead> bulk_read;
bool goes_on = false;
unsigned moments = 0;

}  // namespace

bool in_bulk_read() {
    if (bulk_read != nullptr && seconds() - bulk_read->begun > kLongest) bulk_read.reset();
    return bulk_read != nullptr;
}

void end_bulk_read() {
    if (!goes_on) bulk_read.reset();
}

KeepBulkRead::KeepBulkRead() { goes_on = true; }
KeepBulkRead::~KeepBulkRead() {
    goes_on = false;
    forget_packages();
}

const std::string* kept_output(const char* command) {
    if (!in_bulk_read()) return nullptr;
    for (const Kept& kept : bulk_read->commands) {
        if (kept.command == command) return &kept.output;
    }
    return nullptr;
}

std::size_t bulk_read_room() { return in_bulk_read() ? CWMP_BULK_READ_LIMIT - bulk_read->bytes : 0; }

void keep_output(const char* command, std::string output) {
    const std::size_t size = sizeof(Kept) + std::strlen(command) + output.size();
    if (size > bulk_read_room()) return;
    bulk_read->bytes += size;
    bulk_read->commands.push_front({command, std::move(output)});
}

unsigned packages_moment() { return in_bulk_read() ? moments : 0; }

void keep_package(std::size_t size, ForgetPackages forget) {
    assert(bulk_read != nullptr);
    bulk_read->bytes += size;
    bulk_read->package_bytes += size;
    bulk_read->forget = forget;
}

void forget_packages() {
    if (bulk_read != nullptr) bulk_read->forget_packages();
    ++moments;
}

}  // namespace cwmp

void cwmp_bulk_read_begin() {
    cwmp::bulk_read.reset();
    cwmp::bulk_read = std::make_unique<cwmp::BulkRead>();
    ++cwmp::moments;
}
void cwmp_bulk_read_end() { cwmp::end_bulk_read(); }

#include "core/bulk_read.h"

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
};

std::unique_ptr<BulkRead> bulk_read;
bool goes_on = false;

}  // namespace

bool in_bulk_read() {
    if (bulk_read != nullptr && seconds() - bulk_read->begun > kLongest) bulk_read.reset();
    return bulk_read != nullptr;
}

void end_bulk_read() {
    if (!goes_on) bulk_read.reset();
}

KeepBulkRead::KeepBulkRead() { goes_on = true; }
KeepBulkRead::~KeepBulkRead() { goes_on = false; }

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

}  // namespace cwmp

void cwmp_bulk_read_begin() { cwmp::bulk_read = std::make_unique<cwmp::BulkRead>(); }
void cwmp_bulk_read_end() { cwmp::end_bulk_read(); }

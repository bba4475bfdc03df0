#include "core/bulk_read.h"

#include <algorithm>
#include <ctime>
#include <memory>
#include <vector>

#include "cwmp/bulk_read.h"

namespace cwmp {
namespace {

constexpr time_t kLongest = 60;  // seconds

struct Kept {
    std::string command;
    std::string output;
};

struct BulkRead {
    time_t begun;
    std::size_t bytes = 0;
    std::vector<Kept> commands;
};

std::unique_ptr<BulkRead> bulk_read;
bool goes_on = false;

time_t seconds() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec;
}

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
    const auto found = std::ranges::find(bulk_read->commands, command, &Kept::command);
    return found != bulk_read->commands.end() ? &found->output : nullptr;
}

std::size_t bulk_read_room() { return in_bulk_read() ? CWMP_BULK_READ_LIMIT - bulk_read->bytes : 0; }

void keep_output(const char* command, std::string output) {
    Kept kept{command, std::move(output)};
    const std::size_t size = sizeof kept + kept.command.size() + kept.output.size();
    if (size > bulk_read_room()) return;
    bulk_read->bytes += size;
    bulk_read->commands.push_back(std::move(kept));
}

}  // namespace cwmp

void cwmp_bulk_read_begin() { cwmp::bulk_read = std::make_unique<cwmp::BulkRead>(cwmp::seconds()); }
void cwmp_bulk_read_end() { cwmp::end_bulk_read(); }

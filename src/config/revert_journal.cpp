#include "cwmp/revert_journal.h"

#include <fcntl.h>

#include <cstring>
#include <string>

#include "config/store.h"
#include "core/descriptor.h"
#include "core/log.h"
#include "core/text.h"

using namespace cwmp;

namespace {

constexpr const char* kJournal = "/tmp/ready_to_revert_item";
constexpr const char* kStateStore = "/var/state";
constexpr std::size_t kRecordLength = 254;
constexpr std::size_t kTupleLength = 99;

std::string journal_record(const char* name, const char* value, const char* extra) {
    return formatted("%s##%s##%s", name, value, extra).substr(0, kRecordLength) + '\n';
}

}  // namespace

void add_revert_item(const char* name, const char* value, const char* extra) {
    if (name == nullptr || value == nullptr) return LOG_ERROR("param is NULL, do nothing\n\n");
    const auto journal = open_own_file(kJournal, O_WRONLY | O_APPEND | O_CREAT);
    if (!journal) return LOG_ERROR("open file %s failed!\n\n", kJournal);
    write_whole(journal.get(), journal_record(name, value, extra == nullptr ? "NULL" : extra));
}

void backup_revert_wan_type() {
    const auto type = read_option({"network_sync", "wan", "wan_type"});
    if (type == "dhcp") add_revert_item("wantype", "dynamic_ip", nullptr);
    if (type == "static") add_revert_item("wantype", "static_ip", nullptr);
    if (type == "pppoe") add_revert_item("pppoe_enable", "\"1\"", nullptr);
}

int uciRevert(const char* tuple) {
    if (tuple == nullptr) return LOG_FAILURE("pUciTupleStr or pValue is null\n");
    UciContext context(kLiveStore, kStateStore);
    if (!context) return LOG_FAILURE("Fail to alloc context for uci.\n\n");
    const std::string text(tuple, strnlen(tuple, kTupleLength));
    const auto result = context.revert(text);
    if (!result) return LOG_FAILURE("fail to get ptr %s \n", text.c_str());
    if (*result != 0) return LOG_FAILURE("fail to revert ptr %s (ret:%d)\n", text.c_str(), *result);
    return 0;
}

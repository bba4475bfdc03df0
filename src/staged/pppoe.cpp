// The PPPoE account.
#include <cstddef>

#include "cwmp/apply_flags.h"
#include "staged/engine.h"

using namespace cwmp;
using namespace cwmp::staged;

using Account = cwmp_pppoe_record;

Account pppoe_obj_data;
Account pppoe_obj_data_revert;

namespace {

constexpr std::size_t kLongestDnsServers = 32;
constexpr std::size_t kTooLongCredential = 256;

bool passes(const Check& check) {
    if (check.disabling()) return check.pass("!!!  pppoe check pass 1\n\n");
    check.fill_enable();
    if (check.text(CWMP_PPPOE_DNS_SERVERS).size() > kLongestDnsServers) {
        return check.fail("!!!  pppoe check fail 1\n\n");
    }
    if (check.length(CWMP_PPPOE_USERNAME) >= kTooLongCredential ||
        check.length(CWMP_PPPOE_PASSWORD) >= kTooLongCredential) {
        return check.fail("!!! pppoe username or password is too long\n", kError);
    }
    // Unlike the password, the user name is never taken from the configuration: it belongs to the
    // transaction.
    if (!check.staged(CWMP_PPPOE_USERNAME)) return false;
    return check.fill(CWMP_PPPOE_PASSWORD) && check.pass("!!! pppoe check success \n\n");
}

}  // namespace

const Object cwmp::staged::kPppoe = {
    .name = "pppoe",
    .staging = &pppoe_obj_data,
    .revert = &pppoe_obj_data_revert,
    .size = sizeof(Account),
    .apply = CWMP_APPLY_WAN,
    .count = 4,
    .fields = {enable_word("pppoe_enable"),
               {"pppoe_username", offsetof(Account, username), sizeof(Account::username), 254},
               {"pppoe_password", offsetof(Account, password), sizeof(Account::password), 254},
               {"pppoe_dnsserver", offsetof(Account, dns_servers), sizeof(Account::dns_servers), 15}},
    .pre_revert = pppoe_pre_revert,
    .passes = passes,
    .true_enables_revert = true,
    .check_failed = {"!!!  pppoe check fail \n\n"},
    .apply_rejected = "!!!!!!!! set pppoe fail\n",
    .request_failed = "!!!  pppoe  json file create fail \n\n",
};

int pppoe_pre(int option, const char* value) { return stage(kPppoe, option, value); }
int pppoe_pre_revert(int option, const char* value) { return stage_revert(kPppoe, option, value); }
int pppoe_check() { return check(kPppoe); }
int pppoe_set(unsigned int* flags) { return apply(kPppoe, flags); }

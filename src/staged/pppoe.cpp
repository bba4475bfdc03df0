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

Refusal dns_servers(const Check& group) {
    const bool fit = group.text(CWMP_PPPOE_DNS_SERVERS).size() <= kLongestDnsServers;
    return unless(fit, {"!!!  pppoe check fail 1\n\n"});
}

Refusal credentials(const Check& group) {
    const bool fit = group.length(CWMP_PPPOE_USERNAME) < kTooLongCredential &&
                     group.length(CWMP_PPPOE_PASSWORD) < kTooLongCredential;
    return unless(fit, {"!!! pppoe username or password is too long\n", kError});
}

// Unlike the password, the user name is never taken from the configuration: it belongs to the transaction.
Refusal user_name(const Check& group) { return unless(group.staged(CWMP_PPPOE_USERNAME), kSilent); }
Refusal password(const Check& group) { return group.filled(CWMP_PPPOE_PASSWORD); }

}  // namespace

const Object cwmp::staged::kPppoe = {
    .name = "pppoe",
    .records = records(pppoe_obj_data, pppoe_obj_data_revert),
    .apply = CWMP_APPLY_WAN,
    .fields = {enable_word("pppoe_enable"),
               {"pppoe_username", offsetof(Account, username), sizeof(Account::username), 254},
               {"pppoe_password", offsetof(Account, password), sizeof(Account::password), 254},
               {"pppoe_dnsserver", offsetof(Account, dns_servers), sizeof(Account::dns_servers), 15}},
    .pre_revert = pppoe_pre_revert,
    .true_enables_revert = true,
    .exempted = "!!!  pppoe check pass 1\n\n",
    .rules = {dns_servers, credentials, user_name, password},
    .check_passed = "!!! pppoe check success \n\n",
    .check_failed = {"!!!  pppoe check fail \n\n"},
    .apply_rejected = "!!!!!!!! set pppoe fail\n",
    .request_failed = "!!!  pppoe  json file create fail \n\n",
};

int pppoe_pre(int option, const char* value) { return stage(kPppoe, option, value); }
int pppoe_pre_revert(int option, const char* value) { return stage_revert(kPppoe, option, value); }
int pppoe_check() { return check(kPppoe); }
int pppoe_set(unsigned int* flags) { return apply(kPppoe, flags); }

#include "handlers/interfaces/account.h"

#include "config/store.h"
#include "core/refusal.h"

namespace cwmp::interfaces {

namespace {

constexpr Section kConnection{"network", "internet"};
constexpr Section kConnectionSync{"network_sync", "internet"};

bool is_pppoe(const Account& account) { return account.object == Object::Ppp; }

bool is_in_force(const Account& account) {
    return is_pppoe(account) || read_option({"network_sync", "wan", "wan_type"}) == account.type;
}

bool write_account(const Account& account, const std::string& text) {
    if (!write_option(Section{"protocol", account.type} / account.option, text)) return false;
    return !is_in_force(account) ||
           (write_option(kConnection / account.option, text) && write_option(kConnectionSync / account.option, text));
}

int get_account(const GetArguments& get, const Account& account, Caller caller) {
    if (account.secret) return get.answer("");
    if (require_instance(account.object, get.locate(), caller) == nullptr) return kRefused;
    return get.answer(read_option(Section{"protocol", account.type} / account.option).value_or(""));
}

int set_account(const SetArguments& set, const Account& account, Caller caller) {
    if (require_instance(account.object, set.locate(), caller) == nullptr) return kRefused;
    const auto text = account.accepts(set.value());
    if (!text) return refuse(caller, kError, "value is not valid\n");
    if (!write_account(account, *text)) return refuse(caller, kError, "UCI set params error\n");
    set.raise(CWMP_APPLY_WAN);
    return kDone;
}

}  // namespace

int account(int op, Arguments args, const Account& account, Caller caller) {
    if (op == CWMP_OP_GET) return get_account(GetArguments(args), account, caller);
    return change(op, args, [&](const SetArguments& set) { return set_account(set, account, caller); });
}

}  // namespace cwmp::interfaces

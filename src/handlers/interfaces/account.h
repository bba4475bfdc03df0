// The account of a dialled connection: user name, password, server and the like.
#pragma once

#include "core/handler.h"
#include "handlers/blocks/accepts.h"
#include "handlers/interfaces/instances.h"

namespace cwmp::interfaces {

struct Account {
    Object object = Object::Ppp;
    const char* type = nullptr;  // the WAN type, and the section of package protocol
    const char* option = nullptr;
    Check accepts = nullptr;
    bool secret = false;  // GET answers the empty text

    // NOLINTNEXTLINE(modernize-use-equals-default)
    constexpr ~Account() {}  // for size, as an Option has one
};

// GET answers what is kept for the type, whatever the WAN. A SET keeps the value for the type and, where the
// connection in force is of that type, changes it too; PPPoE's always.
int account(int op, Arguments args, const Account& account, Caller caller = Caller::here());

}  // namespace cwmp::interfaces

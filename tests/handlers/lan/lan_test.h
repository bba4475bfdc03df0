// What the tests of the LAN handlers share.
#pragma once

#include "router_test.h"

class LanTest : public RouterTest {
  protected:
    // What a handler itself reported, without the store's own events.
    Texts events_of(const std::string& handler) {
        Texts events;
        for (const auto& event : console()) {
            if (event.starts_with(handler + ": ")) events.push_back(event.substr(handler.size() + 2));
        }
        return events;
    }

    int set_null(const char* name, Locate locate = {}, int op = CWMP_OP_APPLY) {
        unsigned flags = 0;
        return call(handler(name), op, locate.data(), nullptr, &flags);
    }
};

// Hardware modes and operating standards. Searched in order, first match wins: several rows share a mode.
#include "cwmp/platform.h"

const cwmp_wireless_mode mode_2g[CWMP_WIRELESS_MODES] = {
    {"11b", "b"},      {"11g", "g"},      {"11bg", "b,g"},       {"11ng", "g,n"}, {"11ng", "n,g"},
    {"11ng", "b,g,n"}, {"11axg", "ax,g"}, {"11axg", "b,g,n,ax"}, {"11beg", "be"}, {"11beg", "b,g,n,ax,be"},
};

const cwmp_wireless_mode mode_5g[CWMP_WIRELESS_MODES] = {
    {"11a", "a"},       {"11na", "a,n"}, {"11na", "n,a"},        {"11ac", "ac"},  {"11ac", "n,ac"},
    {"11ac", "a,n,ac"}, {"11axa", "ax"}, {"11axa", "a,n,ac,ax"}, {"11bea", "be"}, {"11bea", "a,n,ac,ax,be"},
};

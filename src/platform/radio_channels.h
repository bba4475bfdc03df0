// The channels that a radio supports.
#pragma once

namespace cwmp {

// What GetChannelPoll answers (cwmp/platform.h), or with frequencies GetFrequencyPoll.
int radio_channels(int op, char* value, const int* locate, int band, bool frequencies = false);

}  // namespace cwmp

#pragma once

namespace cwmp {

// From here on Ctrl-C and SIGTERM end what waits, which then tidies up, and not dm at once.
void catch_interrupts();

// The signal that came, 0 none.
int interrupted();

// Waits until the descriptor can be read; false after the time (in milliseconds), or at an interrupt. -1 waits alone.
bool wait_for(int descriptor, int milliseconds);

}  // namespace cwmp

// Where a transaction over grouped settings begins.
#pragma once

namespace cwmp {

// Called for every value that reaches a group, also for one that is refused before it is staged: otherwise the
// revert which follows the refusal would undo the transaction before. Does nothing within a transaction.
void begin_staged_transaction();

}  // namespace cwmp

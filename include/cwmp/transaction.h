/*
 * All or nothing: what is written between begin and end goes back when the agent says so, or when it was killed.
 *
 *     unsigned int flags = 0;
 *     if (cwmp_transaction_begin(10000) != 0) return kBusy;
 *     ... every parameter with op 2, then with op 3, then with op 1; adds and deletes ...
 *     if (cwmp_transaction_end(all_done, &flags) != 0) ... something could not be undone
 *
 * Opt-in: without begin nothing changes for an agent. docs/transactions.md has the whole contract.
 */
#ifndef CWMP_TRANSACTION_H
#define CWMP_TRANSACTION_H

#include "cwmp/export.h"

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Where the running or cut transaction is noted: readable by its owner alone, gone after a reboot. Empty, or not
 * there, when there is none.
 */
#define CWMP_TRANSACTION_NOTES "/tmp/tr069/.transaction"

/*
 * Begins a transaction. From now on every write, add and delete in the live store and its side copies notes first
 * what was there; one that cannot be noted or stored is refused with -1 (1 by object handlers). What was staged of
 * grouped settings before is forgotten. Callers in other processes wait for its end.
 *
 * wait_ms: how long to wait for another caller's transaction; 0 or less asks once. Result: 0 begun; -1 another
 * holds it for longer, this process has begun one already, or it cannot be noted.
 */
CWMP_EXPORT int cwmp_transaction_begin(int wait_ms);

/*
 * Ends the transaction. keep other than 0: what was written stays. keep 0: grouped settings that were applied get
 * their former values back through the check script, the DHCP pool too; then every option, section and its place
 * in the package is what it was, but for what other programs changed meanwhile.
 *
 * applyFlags (may be null) collects the bits of the groups that were applied to undo them; nothing else needs a
 * service restarted after a transaction that did not end well. Result: 0; -1 when none was begun, or something
 * could not be undone: a group whose values the script refuses (it stays as it is); or, for cwmp_transaction_recover
 * to undo later, what a call of the system failed for: a package that cannot be stored, a script that gives no answer,
 * notes that could not be forgotten, keep or not.
 */
CWMP_EXPORT int cwmp_transaction_end(int keep, unsigned int* applyFlags);

/*
 * Undoes what a killed caller has begun and not ended, as end with keep 0. Nothing does that by itself: an agent
 * calls it when it starts, before its first session. applyFlags as above. Result: 1 a cut transaction was undone;
 * 0 there was none (one that another process is running is not cut); -1 it could not be undone whole.
 */
CWMP_EXPORT int cwmp_transaction_recover(unsigned int* applyFlags);

#ifdef __cplusplus
}
#endif

#endif

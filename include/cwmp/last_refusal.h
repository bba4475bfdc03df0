/* Why a call was refused, for an agent's FaultString. */
#ifndef CWMP_LAST_REFUSAL_H
#define CWMP_LAST_REFUSAL_H

#include "cwmp/export.h"

#ifdef __cplusplus
extern "C" {
#endif

/*
 * The reason of the last refusal, whatever the log level: the text of its event without the blanks and newlines
 * around it, at most 255 bytes. The empty text when the last call was done, or was refused without an event, as
 * a SET of a read-only parameter is.
 *
 * Ask right after a call that was refused, before the next call of any handler and before func_obj_revert. A
 * reason is handed out once: asked again, the function answers the empty text. The text is owned by the library
 * and stands until the next call of a handler.
 */
CWMP_EXPORT const char* cwmp_last_refusal(void);

#ifdef __cplusplus
}
#endif

#endif

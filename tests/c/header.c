#include <tavo/c/tavo_c.h>

/* Uses every type and constant, as a binding does. */
int statuses(void);
int statuses(void) {
    tavo_options options = {0, 0, 0, 0, 0, 0, TAVO_NO_TIMEOUT, 0, 0, 0};
    const tavo_bytes bytes = {0, 0};
    const tavo_error* error = tavo_last_error();
    tavo_device* device = 0;
    tavo_reply* reply = 0;
    options.size = sizeof(options);
    return error->status == TAVO_ERROR_DEVICE || device || reply || bytes.size || TAVO_REPLY_BLOCKS == 0u;
}

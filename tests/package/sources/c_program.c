/* The C interface as an application in C uses it; needs no device. */
#include <stdio.h>
#include <string.h>

#include <tavo/c/tavo_c.h>

int main(void) {
    tavo_options options;
    tavo_reply* reply;
    tavo_device* device = tavo_new();
    if (!device)
        return 1;
    memset(&options, 0, sizeof options);
    options.size = sizeof options;
    options.host = "";
    options.user = "engineer";
    if (tavo_open(device, &options) != TAVO_ERROR_ARGUMENT)
        return 1;
    if (strcmp(tavo_last_error()->message, "'options.host' is empty") != 0)
        return 1;
    if (tavo_call_json(device, "{}", NULL, 0, 0, &reply) != TAVO_ERROR_CLOSED || reply)
        return 1;
    tavo_free(device);
    printf("tavo_c %s\n", tavo_version());
    return 0;
}

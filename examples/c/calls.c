/* Calls in C: one, a batch, bytes without a copy, and what a wrong call tells. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <tavo/c/tavo_c.h>

static void print_reply(const char* what, tavo_status status, tavo_reply* reply) {
    if (status == TAVO_OK)
        printf("%s: %s\n", what, tavo_reply_json(reply, NULL));
    else
        printf("%s: %s\n", what, tavo_last_error()->message);
    tavo_reply_free(reply);
}

static void shift(tavo_device* device) {
    static const unsigned char sent[] = {0xde, 0xad, 0xbe, 0xef};
    tavo_bytes block;
    tavo_reply* reply;
    tavo_status status;
    block.data = sent;
    block.size = sizeof sent;
    status = tavo_call_json(device,
                            "{\"object\": \"cpu0.jtag\", \"method\": \"shiftDR\","
                            " \"arguments\": {\"bits\": 32, \"data\": {\"block\": 0}}}",
                            &block, 1, TAVO_REPLY_BLOCKS, &reply);
    if (status == TAVO_OK) {
        size_t count;
        const tavo_bytes* received = tavo_reply_blocks(reply, &count);
        printf("shiftDR: %lu block of %lu bytes\n", (unsigned long)count, (unsigned long)received[0].size);
    }
    print_reply("shiftDR", status, reply);
}

int main(int argc, char** argv) {
    tavo_device* device;
    tavo_options options;
    tavo_reply* reply;
    tavo_status status;
    if (argc != 3) {
        fprintf(stderr, "usage: %s HOST PORT\n", argv[0]);
        return 2;
    }
    memset(&options, 0, sizeof options);
    options.size = sizeof options;
    options.host = argv[1];
    options.port = atoi(argv[2]);
    options.user = "engineer";
    options.password = "tavo";
    options.timeout_ms = 5000;

    device = tavo_new();
    if (tavo_open(device, &options) != TAVO_OK) {
        fprintf(stderr, "%s\n", tavo_last_error()->message);
        tavo_free(device);
        return 1;
    }

    status = tavo_call_json(device, "{\"object\": \"power\", \"method\": \"set\", \"arguments\": {\"state\": true}}",
                            NULL, 0, 0, &reply);
    print_reply("set", status, reply);

    status = tavo_batch_json(device,
                             "[{\"object\": \"power\", \"method\": \"get\"},"
                             " {\"object\": \"device\", \"method\": \"version\"}]",
                             NULL, 0, 0, &reply);
    print_reply("batch", status, reply);

    shift(device);

    status = tavo_call_json(device, "{\"object\": \"power\", \"method\": \"set\", \"arguments\": {\"state\": \"on\"}}",
                            NULL, 0, 0, &reply);
    print_reply("wrong", status, reply);

    tavo_free(device);
    return 0;
}

#ifndef TAVO_C_H
#define TAVO_C_H

/*
 * The C interface: calls as JSON, for bindings of other languages. docs/c.md shows how to use it.
 *
 * Texts end with a zero byte. No pointer that is passed in is kept. Unless it says otherwise below, a
 * function takes NULL for a handle without harm.
 */

/* NOLINTBEGIN(modernize-deprecated-headers): programs in C include this too */
#include <stddef.h>
#include <stdint.h>
/* NOLINTEND(modernize-deprecated-headers) */

#if defined(_WIN32)
#if defined(TAVO_C_BUILDING_DLL)
#define TAVO_C_API __declspec(dllexport)
#else
#define TAVO_C_API
#endif
#elif defined(__GNUC__)
#define TAVO_C_API __attribute__((visibility("default")))
#else
#define TAVO_C_API
#endif

#ifdef __cplusplus
#define TAVO_C_NOEXCEPT noexcept
extern "C" {
#else
#define TAVO_C_NOEXCEPT
#endif

/* ---- Outcomes ---- */

/* What a function returns: TAVO_OK, or why it failed. More values may come; treat one that you do not know as
 * TAVO_ERROR. */
typedef int32_t tavo_status;

enum {
    TAVO_OK = 0,
    TAVO_ERROR = 1,                /* a reply that makes no sense, or another failure */
    TAVO_ERROR_ARGUMENT = 2,       /* a wrong argument, JSON or value; nothing was sent */
    TAVO_ERROR_NOT_FOUND = 3,      /* the device has no such object or method; nothing was sent */
    TAVO_ERROR_CLOSED = 4,         /* the device is not open */
    TAVO_ERROR_NO_MEMORY = 5,      /* memory ran out */
    TAVO_ERROR_NETWORK = 6,        /* no connection, or it broke */
    TAVO_ERROR_TIMED_OUT = 7,      /* the time limit of an exchange is over */
    TAVO_ERROR_INTERRUPTED = 8,    /* tavo_interrupt() ended it */
    TAVO_ERROR_LOCKED = 9,         /* another user has the device's lock; see tavo_error.locking_user */
    TAVO_ERROR_LOGIN = 10,         /* the device refused user or password */
    TAVO_ERROR_KEY = 11,           /* the device has no known key */
    TAVO_ERROR_CONFIGURATION = 12, /* the device reports that it is not set up */
    TAVO_ERROR_SPECIFICATION = 13, /* client and device disagree about a method, a type or a version */
    TAVO_ERROR_EXECUTION = 14,     /* a call of a batch failed on the device; see tavo_error.call_index */
    TAVO_ERROR_DEVICE = 15         /* the device reported another error */
};

/* A failure. Later versions may append members; only the library makes one. */
typedef struct tavo_error {
    tavo_status status;
    const char* message;       /* for people; bytes of the device in it need not be UTF-8 */
    const char* method;        /* full name of the method that failed; "" if none or unknown */
    const char* locking_user;  /* with TAVO_ERROR_LOCKED; otherwise "" */
    int64_t device_error_code; /* the code that the device reported; -1 if none */
    int64_t call_index;        /* position of the failed call in a batch; -1 if none or unknown */
    /* 0: it has ended, and the next call connects anew; or bytes are left in it, and calls fail with
     * TAVO_ERROR_NETWORK until you close and open the device. */
    int32_t connection_usable;
    int32_t worth_retrying; /* 1: the same call may succeed later. The device may have carried it out. */
} tavo_error;

/* The outcome of the last function that returned a tavo_status, or tavo_new(), in the calling thread. Never
 * NULL; the status is TAVO_OK after a success. Valid until the next such function in this thread. */
TAVO_C_API const tavo_error* tavo_last_error(void) TAVO_C_NOEXCEPT;

/* The version of the library: "2.0.0". */
TAVO_C_API const char* tavo_version(void) TAVO_C_NOEXCEPT;

/* ---- Devices ---- */

/* A device, open or closed. Any thread may use it: calls take turns. */
typedef struct tavo_device tavo_device;

#define TAVO_NO_TIMEOUT UINT32_MAX

/* How to open a device. Later versions may append members, for which 0 means what older versions do. */
typedef struct tavo_options {
    size_t size;             /* sizeof(tavo_options) */
    const char* host;        /* name or address */
    const char* user;        /* who takes the lock */
    const char* password;    /* NULL: empty */
    int32_t port;            /* 0: 6123, or 6124 if secure */
    int32_t secure;          /* not 0: check the device's key before the password is sent */
    uint32_t timeout_ms;     /* limit of each exchange; 0: 10 seconds; TAVO_NO_TIMEOUT: none */
    int32_t keep_held_lock;  /* not 0: leave the lock at the end if the user held it before */
    const char* const* only; /* full names of the objects to build; NULL: all */
    size_t only_count;
} tavo_options;

/* A new device, closed; NULL if memory runs out. */
TAVO_C_API tavo_device* tavo_new(void) TAVO_C_NOEXCEPT;

/* Connects, takes the lock and learns the objects. A device that has been closed can be opened again. */
TAVO_C_API tavo_status tavo_open(tavo_device* device, const tavo_options* options) TAVO_C_NOEXCEPT;

/* Gives the lock back and closes the connection, within a few seconds. Waits for the running call: interrupt
 * that first if need be. Calls of other threads fail from then on with TAVO_ERROR_CLOSED. Leaves
 * tavo_last_error() as it is. */
TAVO_C_API void tavo_close(tavo_device* device) TAVO_C_NOEXCEPT;

/* Closes the device and ends its life: no other thread may use it any more. */
TAVO_C_API void tavo_free(tavo_device* device) TAVO_C_NOEXCEPT;

/* Ends the exchange that is running, the opening included, within 100 ms: it fails with
 * TAVO_ERROR_INTERRUPTED. The device stays open, and its next call connects anew. Waiting for a host name
 * cannot be ended. For any thread and for signal handlers, at any time before tavo_free(). */
TAVO_C_API void tavo_interrupt(tavo_device* device) TAVO_C_NOEXCEPT;

/* Limits each later exchange: milliseconds as in tavo_options. Waits for the running call. */
TAVO_C_API tavo_status tavo_set_timeout(tavo_device* device, uint32_t timeout_ms) TAVO_C_NOEXCEPT;

/* ---- Calls ---- */

/* Bytes of the caller, or of a reply. */
typedef struct tavo_bytes {
    const void* data; /* may be NULL if size is 0 */
    size_t size;
} tavo_bytes;

/* JSON with blocks of bytes beside it. */
typedef struct tavo_reply tavo_reply;

/* Flag: the bytes of a reply become blocks, {"block": index}, without a copy. Otherwise they are {"hex":
 * "00ff"}. */
#define TAVO_REPLY_BLOCKS 1u

/* Calls a method. `call` is {"object": "bench.lamp", "method": "set", "arguments": {"state": true}}; the
 * arguments are those of the method by name, and may be left out if it takes none. Bytes are {"hex": "00ff"}
 * or {"block": index}, an index into `blocks`. The reply is {"code": 0, "value": {...}}: the method's return
 * code, and its results by name or null. A code other than 0 is no failure of this function.
 *
 * *reply is NULL after a failure; otherwise free it. */
TAVO_C_API tavo_status tavo_call_json(tavo_device* device, const char* call, const tavo_bytes* blocks,
                                      size_t block_count, uint32_t flags, tavo_reply** reply) TAVO_C_NOEXCEPT;

/* Makes several calls in one exchange, in order: an array of them; the reply is an array as long. If one is
 * wrong, nothing is sent.
 *
 * If the exchange fails after some calls were answered, *reply holds these answers, and must be freed too.
 * With TAVO_ERROR_EXECUTION the answer of the failed call may be the last of them. */
TAVO_C_API tavo_status tavo_batch_json(tavo_device* device, const char* calls, const tavo_bytes* blocks,
                                       size_t block_count, uint32_t flags,
                                       tavo_reply** reply) TAVO_C_NOEXCEPT;

/* The objects of the device with the methods that can be called: an array of {"methods": [{"arguments":
 * [{"name": "state", "type": "bool"}], "name": "set", "result": []}], "object": "bench.lamp", "type":
 * "relay", "version": "1.0"}. One exchange. */
TAVO_C_API tavo_status tavo_tree_json(tavo_device* device, tavo_reply** reply) TAVO_C_NOEXCEPT;

/* The JSON of a reply, in UTF-8; ends with a zero byte, which *size does not count. `size` may be NULL. Valid
 * until tavo_reply_free(). NULL for NULL. */
TAVO_C_API const char* tavo_reply_json(const tavo_reply* reply, size_t* size) TAVO_C_NOEXCEPT;

/* The blocks of a reply, as many as *count; NULL if there are none. Valid until tavo_reply_free(). */
TAVO_C_API const tavo_bytes* tavo_reply_blocks(const tavo_reply* reply, size_t* count) TAVO_C_NOEXCEPT;

/* A reply outlives its device. */
TAVO_C_API void tavo_reply_free(tavo_reply* reply) TAVO_C_NOEXCEPT;

#ifdef __cplusplus
}
#endif

#endif

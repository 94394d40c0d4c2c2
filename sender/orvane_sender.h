#ifndef ORVANE_SENDER_H
#define ORVANE_SENDER_H

/* The engine's side of the channel on which it reports to the program that started it: the whole of it, in C.
 * The C++ class in EngineMessageSender.h is a thin layer over these functions. C99 and C++. The library needs
 * the system's C library alone. */

/* NOLINTBEGIN(modernize-deprecated-headers,modernize-use-using): this is C. */

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Bytes of text that one message carries at most; the field's last byte is always NUL. */
#define ORVANE_SENDER_TEXT_LIMIT 4095

/* Bytes of a service name at most, without its NUL. Names that the program gives out have 35. */
#define ORVANE_SENDER_NAME_LIMIT 107

/* Room for every error text, with its NUL. */
#define ORVANE_SENDER_ERROR_SIZE 256

/* What a message says. A number is sent as decimal digits, with nothing around them. */
enum orvane_message_type {
    /* The position of the bar, 0 to 100. */
    ORVANE_PROGRESS = 0,
    /* What is being done, one sentence for the user. */
    ORVANE_STEP = 1,
    /* 0 all is well, 1 no connection, 2 stopped on a metered connection. */
    ORVANE_NETWORK = 2,
    /* 0 success, 1 success and a restart of the machine is advised, 3 stopped by the user; a text that is no
     * number ends the run as a fatal error that shows it. */
    ORVANE_END = 3,
    /* A line for the user; the run goes on. */
    ORVANE_ERROR = 4,
    /* Two digits, then a question; on yes this engine is interrupted and started anew with "--step" and that
     * number, on no the run ends. */
    ORVANE_RESTART = 5,
    /* 1 enables the Cancel button, 0 disables it. */
    ORVANE_CANCEL_BUTTON = 6
};

/* A connection to one service. */
typedef struct orvane_sender orvane_sender;

/* Connects to the service whose name the engine was given after "--owner". Returns a sender, which the caller
 * gives back to `orvane_sender_close`; or NULL when no program serves that name or memory is short, with the
 * reason in `error`.
 *
 * `error` is the caller's buffer of `error_size` bytes, best `ORVANE_SENDER_ERROR_SIZE`; the text in it is
 * one line, ends with NUL and is cut if it does not fit. It is written on failure only. NULL, or a size of 0,
 * if no text is wanted. Any thread. */
orvane_sender* orvane_sender_open(const char* service_name, char* error, size_t error_size);

/* Delivers one message; waits while the receiver has no room for it. Returns 0; or -1 when the receiver is
 * gone, with the reason in `error`, as above: later messages will not be delivered either.
 *
 * `text` is UTF-8, ends with NUL and remains the caller's; one of more than `ORVANE_SENDER_TEXT_LIMIT` bytes
 * is cut after its last whole character that fits. Any thread, also several at a time on one sender; messages
 * of one thread arrive in the order of their sending. Not for signal handlers. */
int orvane_sender_send(const orvane_sender* sender, int32_t type, const char* text, char* error,
                       size_t error_size);

/* Closes the connection and frees the sender; no thread may use it any more. Messages already sent arrive all
 * the same. NULL is allowed. */
void orvane_sender_close(orvane_sender* sender);

#ifdef __cplusplus
}
#endif

/* NOLINTEND(modernize-deprecated-headers,modernize-use-using) */

#endif

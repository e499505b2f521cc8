/* What the functions of the extension answer, computed in C++ and called from C.
 *
 * The server leaves a function by longjmp when it reports an error, and C++ leaves one by an exception. Neither may
 * pass through the other. So the two sides meet only here, under these rules:
 *
 * - No function below lets an exception out. A failure is an answer as well.
 * - C++ calls the server only through KxRoom, which never jumps.
 * - C reports errors and checks for interrupts only while no C++ function is on the stack.
 *
 * A backend has one thread, so nothing here is safe for several. */
#pragma once

#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* A text that is not ended by a NUL. */
typedef struct {
    const char* data;
    size_t size;
} KxText;

typedef enum {
    KX_ANSWER_GIVEN,
    KX_ANSWER_NONE,    /* NULL in SQL */
    KX_ANSWER_REFUSED, /* `argument` names it; `text` says what is wrong with it */
    KX_ANSWER_NO_MEMORY,
    KX_ANSWER_FAILED /* `text` says why */
} KxOutcome;

typedef struct {
    KxOutcome outcome;
    int32_t number;
    char* text; /* from KxRoom */
    const char* argument;
} KxAnswer;

/* A port; its numbers are -1 if there is none. */
typedef struct {
    int32_t ne;
    int32_t shelf;
    int32_t slot;
    int32_t subSlot;
    int32_t ppType;
    int32_t fbType;
    int32_t port;
    bool isLogical;
    char* name; /* from KxRoom; null: none */
} KxPort;

/* Room for a text of `size` bytes, followed by a NUL. The server frees it. Null if there is no memory, or if the server
 * cannot hold a text of this size. Defined in C. */
char* KxRoom(size_t size);

/* Texts. */
KxAnswer KxType(KxText fdn);
KxAnswer KxKind(KxText fdn);
KxAnswer KxGet(KxText fdn, KxText piece);
KxAnswer KxField(KxText fdn, KxText field);
KxAnswer KxRecord(KxText fdn);  /* JSON; `fdn` is UTF-8, and so is the answer */
KxAnswer KxProblem(KxText fdn); /* the same */
KxAnswer KxSet(KxText fdn, KxText piece, KxText value);
KxAnswer KxFbName(int32_t fbType);

/* Numbers. */
KxAnswer KxNe(KxText fdn);
KxAnswer KxNumber(KxText fdn, KxText piece);
KxAnswer KxFbLevel(int32_t fbType);

/* Truths, as the numbers 0 and 1. */
KxAnswer KxUnder(KxText fdn, KxText container);
KxAnswer KxSame(KxText one, KxText other);

/* Fills `port` if it gives one. */
KxAnswer KxReadPort(KxText fdn, KxPort* port);

#ifdef __cplusplus
}
#endif

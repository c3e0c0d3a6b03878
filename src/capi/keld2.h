/* The plug-in for other languages: a C interface of libtq5keld2.
 *
 * A session is a host, the plug-in and the shared variables between them. The caller gives
 * the programmer as callbacks, fills the variables by name, calls the plug-in's methods and reads
 * the variables again. Blocks belong to one session alone, so that any number work side by side.
 *
 * Errors: every function answers a keld2_status; KELD2_OK is 0. keld2_lasterror() has the words. No
 * exception leaves a function. How a run went is no status: it stands in prgresult[0], as for every
 * host (0 well, 1 failed, 2 stopped, 3 timed out, 4 unusable algorithm).
 *
 * Threads: a session belongs to the thread that made it, and callbacks are called on that thread,
 * from inside the method that needs them. keld2_stop() and keld2_finishread() may be called from
 * any thread until keld2_destroy() is called; all else from another one answers KELD2_ETHREAD. A
 * callback may read and write variables, but a method called from a callback answers KELD2_EBUSY.
 *
 * Texts are UTF-8 that end with 0.
 */
#ifndef KELD2_H
#define KELD2_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* A header for C. NOLINTBEGIN(modernize-use-using) */

typedef struct keld2_session keld2_session;

typedef enum keld2_status {
    KELD2_OK = 0,
    KELD2_EARGUMENT = 1, /* a pointer that is NULL, a size or value out of its range */
    KELD2_ENAME = 2,     /* no shared variable of this name */
    KELD2_ETYPE = 3,     /* the variable has elements of another type */
    KELD2_EINDEX = 4,    /* an element outside the variable */
    KELD2_EMEMORY = 5,   /* a shared block cannot be made */
    KELD2_EBUSY = 6,     /* a method is at work: the call came from a callback */
    KELD2_ETHREAD = 7,   /* the session belongs to another thread */
    KELD2_EFAULT = 8     /* a run-time error of any other kind */
} keld2_status;

typedef enum keld2_type {
    KELD2_BYTE = 0, /* 0 to 255 */
    KELD2_INT16 = 1,
    KELD2_INT32 = 2,
    KELD2_REAL = 3,
    KELD2_FLAG = 4, /* 0 no, -1 yes */
    KELD2_TEXT = 5
} keld2_type;

/* Buttons of a box and its answers. */
enum { KELD2_BOX_OK = 0, KELD2_BOX_OKCANCEL = 1, KELD2_BOX_ABORTRETRYIGNORE = 2 };
enum {
    KELD2_ANSWER_OK = 0,
    KELD2_ANSWER_CANCEL = 1,
    KELD2_ANSWER_ABORT = 2,
    KELD2_ANSWER_RETRY = 3,
    KELD2_ANSWER_IGNORE = 4
};

/* Changes of a run window. */
enum {
    KELD2_WINDOW_LOAD = 0,
    KELD2_WINDOW_UNLOAD = 1,
    KELD2_WINDOW_CAPTION = 2, /* text: the caption */
    KELD2_WINDOW_GROW = 3,    /* twips: by how much */
    KELD2_WINDOW_SHRINK = 4,
    KELD2_WINDOW_STOPSHOWN = 5,
    KELD2_WINDOW_STOPHIDDEN = 6
};

/* States in which a bulk read ends. */
enum { KELD2_READ_DONE = 2, KELD2_READ_FAILED = 4 };

/* The programmer and the host, as callbacks; user comes back as the first argument of each.
 *
 * A member without an answer may be NULL: the call is passed over. A call of a NULL member with an
 * answer ends the run as failed, except where another meaning is given. A callback that cannot do
 * its work calls keld2_fail(). external/devcore.h and external/usbtransport.h say more of each. */
typedef struct keld2_callbacks {
    size_t size; /* sizeof(keld2_callbacks) */
    void* user;

    /* supplies in mV and socket pins, on: 1 or 0 */
    void (*setvcc)(void* user, int32_t mv);
    void (*setvpp)(void* user, int32_t mv, uint8_t channel);
    void (*setgndpin)(void* user, uint8_t pin, uint8_t on);
    void (*setvccpin)(void* user, uint8_t pin, uint8_t on);
    void (*setvpppin)(void* user, uint8_t pin, uint8_t on);
    void (*drivercommit)(void* user);
    void (*powerdown)(void* user);

    /* the run as a whole */
    void (*signalpass)(void* user, uint8_t zero);
    void (*signalfail)(void* user, uint8_t zero);
    int (*readycheck)(void* user); /* 1: refused */
    void (*readyfail)(void* user);
    int (*modeselect)(void* user, uint8_t mode);              /* 2: failed */
    int (*modeselect2)(void* user, uint8_t mode, int second); /* 2: failed */
    int (*modeselect3)(void* user, uint8_t mode, int second); /* 2: failed */
    int (*armready)(void* user);                              /* 1: refused */

    /* pin-driver registers; regread answers 0 to 255; a q-call is appended to the command list */
    void (*regwrite)(void* user, int32_t value, uint8_t reg);
    void (*qregwrite)(void* user, int32_t value, uint8_t reg);
    int (*regread)(void* user, uint8_t reg);
    void (*qregread)(void* user, uint8_t reg);

    /* pauses in us (short) and ms (long) */
    void (*waitshort)(void* user, int32_t n);
    void (*qwaitshort)(void* user, int32_t n);
    void (*waitlong)(void* user, int32_t n);
    void (*qwaitlong)(void* user, int32_t n);
    void (*qrun)(void* user); /* the command list is sent and emptied */

    /* parallel lines */
    void (*buswrite)(void* user, int32_t address, uint8_t data, uint8_t control);
    void (*qbuswrite)(void* user, int32_t address, uint8_t data, uint8_t control);
    void (*busconfig)(void* user, int32_t zero, uint8_t direction, uint8_t mode);
    void (*qbusconfig)(void* user, int32_t zero, uint8_t direction, uint8_t mode);

    /* Checks of what was read against ibuffer: mode 0 stores, 1 compares, 2 checks blank, 3
     * collects a report. A mismatch leaves 1 in prgresult[0] and answers 1. */
    int (*checkbyte)(void* user, int16_t value, int32_t address, int mode);
    int (*checkword)(void* user, uint8_t low, uint8_t high, int32_t address, int mode, int blank);

    /* ARM */
    int (*transferwait)(void* user, uint8_t count);     /* 0: failed; else the record is in ibuf1 */
    int32_t (*loadalgobuf)(void* user, int32_t length); /* answers the length; NULL: unchanged */

    /* USB: 0 well, 1 failed. frame and source are valid until the callback returns. */
    int (*usbcomwrite)(void* user, const uint8_t* frame, size_t length);
    int (*usbbulkwrite)(void* user, const uint8_t* source, size_t length);
    /* Begins a read and returns at once. target may be written, from any thread, until
     * keld2_finishread() is called. NULL: every read fails. */
    void (*usbbulkread)(void* user, uint8_t* target, size_t length);

    /* the host */
    int (*messagebox)(void* user, int buttons, const char* title, const char* text);
    /* answers a KELD2_ANSWER_; NULL: the answer that starts nothing (Abort, Cancel, else OK) */
    void (*window)(void* user, const char* name, int change, int twips, const char* text);
    void (*service)(void* user); /* each time that a run serves its message loop */
} keld2_callbacks;

typedef struct keld2_options {
    size_t size;        /* sizeof(keld2_options) */
    const char* folder; /* the run's current folder (SVF texts, algorithms); NULL: "." */
    int32_t buflength;  /* bytes of the chip's data; ibuffer has 2200 more */
    int16_t instance;   /* host instance number, as for keld2_bufcomkeld2 */
} keld2_options;

const char* keld2_version(void); /* such as "0.1.0" */

/* Makes a session in *session; options may be NULL. The callbacks are copied. Nothing is called
 * back before a method is. KELD2_EMEMORY when a block cannot be made. */
int keld2_create(const keld2_options* options, const keld2_callbacks* callbacks,
                 keld2_session** session);
/* Ends it; no bulk read may be running. NULL does nothing. KELD2_EBUSY and KELD2_ETHREAD leave the
 * session as it was. */
int keld2_destroy(keld2_session* session);

/* What the last function that did not answer KELD2_OK, or the last run-time error of a callback,
 * was about; valid until the next call. "" when there was none. */
const char* keld2_lasterror(const keld2_session* session);

/* The plug-in's seven methods. keld2_bufcomkeld2 comes first; its number is that of the options. */
int keld2_runKeld2Prg(keld2_session* session, int usbenable);
int keld2_editfigkeld2(
    keld2_session* session); /* an editor has no front end here: it is cancelled */
int keld2_usercode(keld2_session* session);
int keld2_bufcomkeld2(keld2_session* session, int16_t num);
int keld2_freesharebufferkeld2(keld2_session* session);
int keld2_keld2warn(keld2_session* session, uint8_t no);
int keld2_sinitkeld2(keld2_session* session);

/* Gives ibuffer another size; content is lost. keld2_bufcomkeld2 must follow. */
int keld2_resize(keld2_session* session, int32_t buflength);

/* Stops a run: 2 in prgresult[0]. It takes effect at the next service of the message loop;
 * a transfer that hangs is left at its time-out. */
int keld2_stop(keld2_session* session);
/* Ends a bulk read; state: KELD2_READ_DONE or KELD2_READ_FAILED. */
int keld2_finishread(keld2_session* session, int state);
/* From a callback: what was asked for cannot be done. The run ends with 1 in prgresult[0] and the
 * power off as soon as the callback has returned. */
int keld2_fail(keld2_session* session, const char* why);

/* Shared variables by name; index counts from 0. */
int keld2_describe(keld2_session* session, const char* name, int* type, int64_t* count);
/* whole numbers: byte, int16, int32 and flag; a value out of the type's range: KELD2_EARGUMENT */
int keld2_getint(keld2_session* session, const char* name, int64_t index, int64_t* value);
int keld2_setint(keld2_session* session, const char* name, int64_t index, int64_t value);
int keld2_getreal(keld2_session* session, const char* name, int64_t index, double* value);
int keld2_setreal(keld2_session* session, const char* name, int64_t index, double value);
/* Copies the text and its end into buffer, cut to size; *length (may be NULL) is that of the whole
 * text in bytes, without the end. buffer may be NULL with size 0. */
int keld2_gettext(keld2_session* session, const char* name, int64_t index, char* buffer,
                  size_t size, size_t* length);
int keld2_settext(keld2_session* session, const char* name, int64_t index, const char* text);
/* Runs of bytes of a byte variable, such as ibuffer. Nothing is copied unless all fit. */
int keld2_read(keld2_session* session, const char* name, int64_t index, uint8_t* bytes,
               size_t count);
int keld2_write(keld2_session* session, const char* name, int64_t index, const uint8_t* bytes,
                size_t count);

/* NOLINTEND(modernize-use-using) */

#ifdef __cplusplus
}
#endif

#endif

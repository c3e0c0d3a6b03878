/* A host in C: a programmer as callbacks, and a chip id read through it. */
#include <keld2.h>
#include <stdio.h>
#include <string.h>

typedef struct chip {
    uint8_t id[3];
    int next; /* byte of the id */
} chip;

static void setvcc(void* user, int32_t mv) { (void)user, printf("VCC %d mV\n", (int)mv); }
static void powerdown(void* user) { (void)user, puts("power down"); }
static void signalpass(void* user, uint8_t zero) { (void)user, (void)zero, puts("pass"); }
static void signalfail(void* user, uint8_t zero) { (void)user, (void)zero, puts("fail"); }
static int readycheck(void* user) { return (void)user, 0; }
static int modeselect(void* user, uint8_t mode) { return (void)user, (void)mode, 0; }
static int send(void* user, const uint8_t* frame, size_t length) {
    return (void)user, (void)frame, (void)length, 0;
}
static int regread(void* user, uint8_t reg) {
    chip* c = user;
    (void)reg;
    return c->id[c->next++ % 3];
}

/* The job: start the chip and read its id, but carry out no operation. */
static int describe(keld2_session* s) {
    static const struct {
        const char* name;
        int index, value;
    } values[] = {{"prgmode", 0, 21},  {"bvcc", 0, 500},         {"bvccpin", 0, 40},
                  {"bgndpin", 0, 20},  {"prgresult", 1, 1},      {"compid", 0, 0x5A},
                  {"typeid", 0, 0x41}, {"chipidtestmode", 0, -1}};
    int status = keld2_bufcomkeld2(s, 0);
    for (size_t i = 0; status == KELD2_OK && i < sizeof values / sizeof *values; ++i)
        status = keld2_setint(s, values[i].name, values[i].index, values[i].value);
    if (status == KELD2_OK) status = keld2_settext(s, "prgnote", 9, "maker ");
    if (status == KELD2_OK) status = keld2_settext(s, "prgnote", 10, "device ");
    return status;
}

int main(void) {
    chip mine = {{0x5A, 0x41, 0x07}, 0};
    const keld2_callbacks callbacks = {.size = sizeof callbacks,
                                       .user = &mine,
                                       .setvcc = setvcc,
                                       .powerdown = powerdown,
                                       .signalpass = signalpass,
                                       .signalfail = signalfail,
                                       .readycheck = readycheck,
                                       .modeselect = modeselect,
                                       .regread = regread,
                                       .usbcomwrite = send};
    keld2_session* s;
    if (keld2_create(NULL, &callbacks, &s) != KELD2_OK) return 1;
    int64_t result = 1;
    char log[1000] = "";
    int status = describe(s);
    if (status == KELD2_OK) status = keld2_runKeld2Prg(s, 1);
    if (status == KELD2_OK) status = keld2_getint(s, "prgresult", 0, &result);
    if (status == KELD2_OK) status = keld2_gettext(s, "MainRtstr", 0, log, sizeof log, NULL);
    if (status != KELD2_OK) fprintf(stderr, "chost: %s\n", keld2_lasterror(s));
    fputs(log, stdout);
    keld2_destroy(s);
    return status == KELD2_OK && result == 0 && strstr(log, "5A   device 4107") != NULL ? 0 : 1;
}

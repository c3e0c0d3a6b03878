#!/usr/bin/env python3
"""Drives the plug-in from Python through its C interface: jobs on a chip whose answers are
callbacks, and the errors of every function.

usage: ctypes_test.py LIBRARY HEADER
"""
import ctypes as c
import os
import re
import sys
import threading
import unittest

LIBRARY, HEADER = sys.argv[1], sys.argv[2]
TYPES = {"int": c.c_int, "int16_t": c.c_int16, "int32_t": c.c_int32, "uint8_t": c.c_uint8,
         "size_t": c.c_size_t, "void": None, "const char*": c.c_char_p, "void*": c.c_void_p,
         "uint8_t*": c.POINTER(c.c_uint8), "const uint8_t*": c.POINTER(c.c_uint8)}


def callbackfields(header):
    """The members of keld2_callbacks behind user, in their order, as the header declares them."""
    body = re.search(r"typedef struct keld2_callbacks \{(.*?)\} keld2_callbacks;", header, re.S)[1]
    for answer, name, parameters in re.findall(r"(\w+) \(\*(\w+)\)\(([^)]*)\)", body):
        types = [TYPES[re.sub(r"\s*\w+$", "", one.strip())] for one in parameters.split(",")]
        yield name, c.CFUNCTYPE(TYPES[answer], *types)


with open(HEADER, encoding="utf-8") as file:
    TEXT = file.read()
FIELDS = list(callbackfields(TEXT))
OK, ARGUMENT, NAME, TYPE, INDEX, MEMORY, BUSY, THREAD = range(8)
lib = c.CDLL(LIBRARY)
lib.keld2_lasterror.restype = lib.keld2_version.restype = c.c_char_p


class Callbacks(c.Structure):
    _fields_ = [("size", c.c_size_t), ("user", c.c_void_p)] + FIELDS


class Options(c.Structure):
    _fields_ = [("size", c.c_size_t), ("folder", c.c_char_p), ("buflength", c.c_int32),
                ("instance", c.c_int16)]


READ, BLANK = 2, 4
PAGE, PROGRAM, IDAREA, CONFIG = 16, 64, 16, 16
CHIP = bytes(i * 7 % 251 for i in range(PROGRAM))


class Session:
    """A session with a serial chip of 64 bytes; what it is asked to do is noted in calls."""

    def __init__(self, **replaced):
        self.calls, self.boxes = [], []
        self.registers = iter([0x5A, 0x44, 1] + list(range(100, 100 + PAGE)) + [0xC0, 0xC1])
        answers = dict(readycheck=lambda: 0, modeselect=lambda mode: 0, usbcomwrite=lambda f, n: 0,
                       regread=lambda reg: next(self.registers), checkbyte=self.checkbyte,
                       usbbulkread=self.bulkread, powerdown=lambda: self.calls.append("powerdown"),
                       signalpass=lambda zero: self.calls.append("pass"),
                       signalfail=lambda zero: self.calls.append("fail"),
                       messagebox=self.messagebox)
        answers.update(replaced)
        self.table = Callbacks(size=c.sizeof(Callbacks))
        for name, prototype in FIELDS:
            if answers.get(name):
                setattr(self.table, name, self.without_user(prototype, answers[name]))
        self.handle = c.c_void_p()
        options = Options(c.sizeof(Options), b".", PROGRAM + IDAREA + CONFIG, 3)
        status = lib.keld2_create(c.byref(options), c.byref(self.table), c.byref(self.handle))
        assert status == OK, status

    @staticmethod
    def without_user(prototype, work):
        return prototype(lambda user, *arguments: work(*arguments))

    def call(self, name, *arguments):
        return getattr(lib, "keld2_" + name)(self.handle, *arguments)

    def must(self, name, *arguments):
        status = self.call(name, *arguments)
        assert status == OK, f"{name}: {status}, {self.error()}"

    def error(self):
        return lib.keld2_lasterror(self.handle).decode()

    def getint(self, name, index=0):
        value = c.c_int64()
        self.must("getint", name.encode(), c.c_int64(index), c.byref(value))
        return value.value

    def set(self, name, *values):
        for index, value in enumerate(values):
            kind = {int: ("setint", c.c_int64), float: ("setreal", c.c_double),
                    str: ("settext", lambda text: text.encode())}[type(value)]
            self.must(kind[0], name.encode(), c.c_int64(index), kind[1](value))

    def text(self, name, index=0):
        length = c.c_size_t()
        where = (name.encode(), c.c_int64(index))
        self.must("gettext", *where, None, c.c_size_t(0), c.byref(length))
        buffer = c.create_string_buffer(length.value + 1)
        self.must("gettext", *where, buffer, c.c_size_t(len(buffer)), None)
        return buffer.value.decode()

    def bytes(self, name, index, count):
        buffer = (c.c_uint8 * count)()
        self.must("read", name.encode(), c.c_int64(index), buffer, c.c_size_t(count))
        return bytes(buffer)

    # --- the programmer ---

    def bulkread(self, target, length):
        def deliver():
            c.memmove(target, CHIP, len(CHIP))
            lib.keld2_finishread(self.handle, 2)
        self.thread = threading.Thread(target=deliver)
        self.thread.start()

    def checkbyte(self, value, address, mode):
        if mode == 0:
            self.must("setint", b"ibuffer", c.c_int64(address), c.c_int64(value))
            return 0
        wanted = 255 if mode == 2 else self.getint("ibuffer", address)
        if value == wanted:
            return 0
        self.set("prgresult", 1)
        return 1

    def messagebox(self, buttons, title, text):
        self.boxes.append((buttons, title.decode(), text.decode()))
        return 2

    # --- the host ---

    def describe(self, operation):
        self.must("bufcomkeld2", c.c_int16(3))
        for name, value in dict(prgmode=21, tlength=PROGRAM + IDAREA + CONFIG, bvcch=IDAREA,
                                pagelength=PAGE, bvcc=500, bvccpin=40, bgndpin=20, bvpppin=31,
                                chipidtestmode=-1, compid=0x5A, typeid=0x44).items():
            self.set(name, value)
        self.set("wltbigendbuf", 0.0, float(PROGRAM - 1), 0.0)
        self.set("prgresult", 0, operation)
        for index, note in enumerate([">>", " ...", " OK", " failed"]):
            self.must("settext", b"prgnote", c.c_int64(index), note.encode())
        self.must("settext", b"MainmnuPrg", c.c_int64(operation), "Läsen".encode())

    def run(self, operation):
        self.describe(operation)
        self.must("runKeld2Prg", c.c_int(1))
        return self.getint("prgresult")

    def destroy(self):
        return lib.keld2_destroy(self.handle)


class Jobs(unittest.TestCase):
    def session(self, **replaced):
        session = Session(**replaced)
        self.addCleanup(session.destroy)
        return session

    def test_a_chip_is_read_into_the_buffer(self):
        s = self.session()
        self.assertEqual(s.run(READ), 0, s.text("MainRtstr"))
        self.assertEqual(s.bytes("ibuffer", 0, PROGRAM), CHIP)
        self.assertEqual(s.bytes("ibuffer", PROGRAM, IDAREA + 2),
                         bytes(range(100, 100 + PAGE)) + b"\xc0\xc1")
        self.assertEqual(s.calls[-2:], ["pass", "powerdown"])
        self.assertIn("Läsen", s.text("MainRtstr"))
        self.assertEqual(s.boxes, [])

    def test_a_chip_that_is_not_blank_fails(self):
        s = self.session()
        self.assertEqual(s.run(BLANK), 1)
        self.assertIn("fail", s.calls)
        self.assertEqual(s.calls[-1], "powerdown")

    def test_a_wrong_id_is_asked_about(self):
        s = self.session(regread=lambda reg: 0)
        s.run(READ)
        self.assertEqual(set(s.calls), {"powerdown"})
        self.assertEqual(s.bytes("ibuffer", 0, 4), bytes(4))
        self.assertEqual([box[0] for box in s.boxes], [2])

    def test_failures_of_the_programmer_end_the_run(self):
        failing = lambda: s.call("fail", b"the cable is loose")
        read_fails = lambda target, length: lib.keld2_finishread(s.handle, 4)
        for replaced, result, words in [
                (dict(qrun=failing), 1, "the cable is loose"),
                (dict(regread=None), 1, "there is no callback regread"),
                (dict(usbbulkread=None), 3, ""),
                (dict(usbbulkread=read_fails), 3, "")]:
            with self.subTest(replaced=list(replaced), words=words):
                s = self.session(**replaced)
                self.assertEqual(s.run(READ), result)
                self.assertEqual(s.error(), words)
                self.assertEqual(s.calls[-1], "powerdown")

    def test_a_run_is_stopped_from_another_thread(self):
        def slow(target, length):
            threading.Timer(0.02, lambda: s.call("stop")).start()
            threading.Timer(0.06, lambda: s.call("finishread", c.c_int(2))).start()
        s = self.session(usbbulkread=slow)
        self.assertEqual(s.run(READ), 2)
        self.assertEqual(s.calls[-1], "powerdown")

    def test_sessions_stand_side_by_side(self):
        a, b = self.session(), self.session()
        a.set("pagelength", 7)
        self.assertEqual(b.getint("pagelength"), 0)

    def test_the_buffer_gets_another_size(self):
        s = self.session()
        s.must("resize", c.c_int32(100000))
        count = c.c_int64()
        s.must("describe", b"ibuffer", None, c.byref(count))
        self.assertEqual(count.value, 102200)
        self.assertEqual(s.run(READ), 0)
        self.assertEqual(s.bytes("ibuffer", 0, PROGRAM), CHIP)

    def test_nothing_is_left_behind(self):
        s = Session()
        mine = f"keld2-{os.getpid()}-"
        left = lambda: [n for n in os.listdir("/dev/shm") if n.startswith(mine)]
        s.describe(READ)
        self.assertTrue(left())
        self.assertEqual(s.destroy(), OK)
        self.assertEqual(left(), [])


class Errors(unittest.TestCase):
    def setUp(self):
        self.s = Session()
        self.addCleanup(self.s.destroy)

    def test_each_wrong_use_has_its_status(self):
        index, value = c.c_int64, c.c_int64()
        byte = (c.c_uint8 * 4)()
        out = c.byref(value)
        for expected, words, name, *arguments in [
                (NAME, "nothing is no shared variable", "getint", b"nothing", index(0), out),
                (TYPE, "prgnote has no elements of type integer", "getint", b"prgnote", index(0), out),
                (TYPE, "bvcc has no elements of type byte", "read", b"bvcc", index(0), byte, c.c_size_t(1)),
                (TYPE, "bvcc has no elements of type text", "settext", b"bvcc", index(0), b"x"),
                (TYPE, "bvcc has no elements of type real", "setreal", b"bvcc", index(0), c.c_double(1)),
                (INDEX, "bvcc: 1 elements from 4, there are 4", "getint", b"bvcc", index(4), out),
                (INDEX, "bvcc: 1 elements from -1, there are 4", "setint", b"bvcc", index(-1), index(0)),
                (INDEX, "ubuf1: 4 elements from 17, there are 20", "write", b"ubuf1", index(17), byte, c.c_size_t(4)),
                (INDEX, "from 9223372036854775807", "read", b"ubuf1", index(2**63 - 1), byte, c.c_size_t(2)),
                (INDEX, "18446744073709551615 elements", "read", b"ubuf1", index(0), byte, c.c_size_t(2**64 - 1)),
                (ARGUMENT, "prgmode: 256 is not within 0 to 255", "setint", b"prgmode", index(0), index(256)),
                (ARGUMENT, "usbable: 1 is not within -1 to 0", "setint", b"usbable", index(0), index(1)),
                (ARGUMENT, "-32769 is not within -32768 to 32767", "setint", b"bvcc", index(0), index(-32769)),
                (ARGUMENT, "name is NULL", "getint", None, index(0), out),
                (ARGUMENT, "value is NULL", "getint", b"bvcc", index(0), None),
                (ARGUMENT, "buflength is -1, expected 0 or more", "resize", c.c_int32(-1)),
                (MEMORY, "a main buffer of 2147483647", "resize", c.c_int32(2**31 - 1))]:
            with self.subTest(words=words):
                self.assertEqual(self.s.call(name, *arguments), expected)
                self.assertIn(words, self.s.error())

    def test_a_text_is_cut_to_its_buffer(self):
        self.s.set("prgnote", "abcdef")
        buffer, length = c.create_string_buffer(b"xxxx", 4), c.c_size_t()
        self.s.must("gettext", b"prgnote", c.c_int64(0), buffer, c.c_size_t(4), c.byref(length))
        self.assertEqual((buffer.value, length.value), (b"abc", 6))

    def test_creating_checks_what_it_gets(self):
        handle = c.c_void_p()
        create = lambda options, table: lib.keld2_create(options, table, c.byref(handle))
        table = Callbacks(size=c.sizeof(Callbacks))
        for options, callbacks in [
                (None, None), (None, Callbacks(size=8)), (Options(size=1), table),
                (Options(c.sizeof(Options), None, -5, 0), table)]:
            given = [c.byref(one) if one else None for one in (options, callbacks)]
            self.assertEqual(create(*given), ARGUMENT)
        self.assertEqual(create(None, c.byref(table)), OK)
        self.assertEqual(lib.keld2_destroy(handle), OK)
        self.assertEqual(lib.keld2_destroy(None), OK)
        self.assertEqual(lib.keld2_runKeld2Prg(None, 0), ARGUMENT)

    def test_another_thread_is_refused(self):
        found = []
        calls = [lambda: self.s.call("sinitkeld2"), self.s.destroy,
                 lambda: self.s.call("setint", b"bvcc", c.c_int64(0), c.c_int64(1))]
        worker = threading.Thread(target=lambda: found.extend(one() for one in calls))
        worker.start()
        worker.join()
        self.assertEqual(found, [THREAD] * 3)

    def test_a_callback_must_not_call_a_method(self):
        found = []

        def reenter(mv):
            found.extend([s.call("sinitkeld2"), s.call("resize", c.c_int32(1)), s.destroy()])
        s = Session(setvcc=reenter)
        self.assertEqual(s.run(READ), 0)
        self.assertEqual(set(found), {BUSY})
        self.assertEqual(s.destroy(), OK)

    def test_an_editor_is_cancelled(self):
        self.s.describe(READ)
        self.s.must("editfigkeld2")
        self.s.must("usercode")
        self.s.must("keld2warn", c.c_uint8(54))
        self.assertEqual(len(self.s.boxes), 1)

    def test_the_version_is_told(self):
        self.assertRegex(lib.keld2_version().decode(), r"^\d+\.\d+\.\d+$")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])

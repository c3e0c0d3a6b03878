// Whatever cannot be right is refused before the programmer is touched.
#include "cli/bench.h"
#include "host/files/files.h"

namespace keld2::test {
namespace {

class Refusals : public Bench {};

struct RefusalCase {
    std::vector<std::string> arguments;
    int status;
    std::string message;  // the whole of standard error, behind "keld2: "
};

TEST_F(Refusals, AreSaidToTheLetter) {
    const std::string good = hex("good.hex", {{0, {1}}});
    const std::string big = hex("big.hex", {{0x81E, {1, 2, 3, 4, 5}}});
    const std::string damaged = folder_.file("damaged.hex", ":0100000055AB\n").string();
    const std::string map = folder_
                                .file("map.jed",
                                      "\x02*QF8*F0*\x03"
                                      "0000")
                                .string();
    const std::string none = file("none.hex").string();
    const RefusalCase cases[] = {
        {{"program", damaged}, 65, damaged + ":1: checksum is AB, expected AA"},
        {{"program", big},
         65,
         big + ": bytes 0822 to 0822 lie outside serial-2k, expected addresses 0000 to 0821"},
        {{"program", map},
         65,
         map + ": is a fuse map, serial-2k holds bytes; expected .bin, .hex, .ihx, .s19, .srec or "
               ".mot"},
        {{"config", good},
         65,
         good + ": gives no byte for address 0820, expected the configuration bytes (0820 to "
                "0821)"},
        {{"verify", none}, 66, none + ": cannot be opened: No such file or directory"},
        {{"read", "out.txt"},
         65,
         "out.txt: the ending \".txt\" names no format, expected one of .bin, .hex, .ihx, .s19, "
         ".srec, .mot, .jed"},
        {{"read", "no/out.bin"}, 66, "no/out.bin: cannot be written: No such file or directory"},
        {{"secure"},
         64,
         "serial-2k cannot do \"secure\", expected one of read, verify, blank, compare, program, "
         "erase, config"},
        {{"auto", good, "--steps", "erase,wipe"},
         64,
         "--steps erase,wipe: \"wipe\" is no operation, expected some of read, verify, blank, "
         "compare, program, erase, config, secure, with commas between"},
        {{"auto", good, "--steps",
          "erase,erase,erase,erase,erase,erase,erase,erase,erase,erase,"
          "erase,erase"},
         64,
         "--steps: 12 steps, expected at most 11"},
        {{"auto"}, 64, "no file for \"program\", expected auto FILE"},
        {{"auto", good, "--steps", "erase,read"},
         64,
         "read is no step of a sequence, expected the command \"read OUT\""},
        {{"verfy", good}, 64, "there is no command \"verfy\"; nearest: verify; see keld2 --help"},
        {{"erase", "--langage", "pl"},
         64,
         "there is no option \"--langage\"; nearest: --language; see keld2 erase --help"},
        {{"erase", "now"}, 64, "\"now\" is one word too many; see keld2 erase --help"},
        {{"devices"}, 64, "no command; see keld2 devices --help"},
        {{"read"}, 64, "OUT is required; see keld2 read --help"},
        {{"erase", "--language", "xx"},
         64,
         "--language xx: is not known, expected one of en, zh-cn, zh-tw, ko, pl, it, nl, pt, tr, "
         "hu, ru"},
        {{"erase", "--progress", "dots"},
         64,
         "--progress dots: is not known, expected auto, bar, lines or none"},
        {{"erase", "--on-box", "maybe"},
         64,
         "--on-box maybe: is not known, expected ok, cancel, abort, retry or ignore"},
        {{"verify", good, "--format", "elf"},
         64,
         "--format elf: is not known, expected bin, hex, srec or jed"},
    };
    for (const RefusalCase& c : cases) {
        const ProgramResult result = keld2(c.arguments);
        EXPECT_EQ(result.status, c.status) << c.message;
        EXPECT_EQ(result.err, "keld2: " + c.message + "\n");
        EXPECT_FALSE(std::filesystem::exists(chip())) << c.message;
    }
}

TEST_F(Refusals, OfTheCommandLineItself) {
    const RefusalCase cases[] = {
        {{"erase"}, 64, "no device, expected -d DEVICE or the environment variable KELD2_DEVICE"},
        {{"-d", "serial-3k", "erase"},
         65,
         "there is no device \"serial-3k\"; nearest: serial-2k, serial-4k"},
        {{"-d", "serial-2k", "-p", "usb", "erase"},
         64,
         "-p usb: there is no programmer \"usb\", expected sim[:image=FILE][,fault=FAULT]... or "
         "hardware"},
        {{"-d", "serial-2k", "-p", "sim:speed=2", "erase"},
         64,
         "-p sim:speed=2: \"speed=2\" is no setting, expected sim[:image=FILE][,fault=FAULT]... or "
         "hardware"},
        {{"-q", "-d", "serial-2k", "-p", "hardware", "erase"},
         64,
         "-p hardware: the components that drive the programmer are libraries of Windows, expected "
         "keld2.exe on the machine that has them, or -p sim here"},
    };
    for (const RefusalCase& c : cases) {
        const ProgramResult result = runprogram(c.arguments);
        EXPECT_EQ(result.status, c.status) << c.message;
        EXPECT_EQ(result.err, "keld2: " + c.message + "\n");
    }
    EXPECT_EQ(runprogram({}).status, 64);
    EXPECT_EQ(runprogram({"wipe"}).status, 64);
    EXPECT_EQ(runprogram({"-d", "serial-2k", "program"}).status, 64) << "no file";
    EXPECT_EQ(runprogram({"--help"}).status, 0);
    const ProgramResult fault = runprogram({"-d", "serial-2k", "-p", "sim:fault=smoke", "erase"});
    EXPECT_EQ(fault.status, 64);
    EXPECT_THAT(fault.err, ::testing::HasSubstr("smoke"));
}

TEST_F(Refusals, ADamagedChipImageIsNotOverwritten) {
    folder_.file("chip", "something else");
    EXPECT_EQ(keld2({"erase"}).status, 65);
    EXPECT_EQ(host::readtext(chip()), "something else");
}

}  // namespace
}  // namespace keld2::test

// Runs of the SVF families with a scripted programmer: the calls that come of a text, and the
// read-back of a chip that holds given rows.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "host/svf/svfexplain.h"
#include "jtag/script.h"
#include "jtag/wiring.h"
#include "platform/numbers.h"
#include "platform/platformdecorator.h"
#include "testmachine.h"

namespace keld2::testing {

class SvfBench : public Script, public PlatformDecorator {
  public:
    SvfBench(std::uint8_t family, std::int32_t fuses);

    // Plays a text as operation 6; the log starts empty. Answers prgresult[0].
    int play(const std::string& text);
    // One operation, or the sequence of autoprg when it is 0, with the text in file.
    int run(int operation);
    // The same as a sequence of two operations 6; the second plays another text.
    int playtwo(const std::string& first, const std::string& second);
    std::size_t count(const std::string& call) const;
    SharedVariables& s() { return module_.variables(); }

    // What the host knows of the device, and how it explains a failed play of text.
    host::LogicDevice device();
    std::vector<host::SvfMismatch> explained(const std::string& text);

    // A row as the programmer brings it: whole bytes, then a raw byte for each of the last bits.
    Bytes packed(const Bits& bits) const;
    // A raw byte for each bit.
    Bytes raw(const Bits& bits) const;

    std::string file;                      // the text
    std::function<void()> onread = [] {};  // before the text is read

    FileContent readfile(std::span<const std::u16string> parts) override;

  private:
    std::uint8_t rawbyte(char bit) const;

    const JtagFamily* family_;
    mutable test::TestMachine machine_;
    mutable Module module_;
};

// Bits as a hexadecimal field: the first bit is bit 0 of the last digit. digits: at least so many.
std::string field(const Bits& bits);
// A read of these bits on one line, all of them compared.
std::string read(const Bits& bits);

}  // namespace keld2::testing

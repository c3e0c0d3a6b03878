// Wave: the lines of a programmer's socket on their way into a waveform file.
//
// Which lines there are follows from the device's prgmode[0]: JTAG lines by their wiring, the byte
// port of the serial microcontrollers, or the parallel lines; supplies always. Beside them stand
// texts: the operation, the statement (what the lines do just then, in the words of a told trace)
// and the count of rows that have been shifted.
#pragma once

#include <deque>
#include <memory>
#include <optional>
#include <string>

#include "host/tell/grouper.h"
#include "host/wave/vcdwriter.h"
#include "sim/listengine.h"
#include "sim/socket.h"

namespace keld2::host {

class Wave {
  public:
    // Throws HostError (66) when the file cannot be written.
    Wave(const std::filesystem::path& path, std::uint8_t prgmode);
    ~Wave();

    // What the lines drive and carry, as the socket has it.
    void supplies(const sim::Socket& socket);
    void written(const sim::Socket& socket, std::uint8_t reg);
    void moved(const sim::Socket& socket);
    // A sample of a register; without a value nobody knows what the chip has answered.
    void sampled(const sim::Socket& socket, std::uint8_t reg, std::optional<std::uint8_t> value);
    // Eight pulses at once, from now on; first bits in bit 0.
    void pulses(const sim::Socket& socket, std::uint8_t tdi, std::uint8_t tdo);
    // The level of TDO by what its register would read, from now on; never called: not known.
    void tdo(const sim::Socket& socket, std::uint8_t value);

    const sim::JtagLines* jtag() const { return jtag_; }

    void operation(const std::string& caption);
    // Ends the file. Throws HostError (66) when it could not be written.
    void finish();

  private:
    enum class Change { wire, unknown, real, text };
    struct Event {
        std::int64_t number;
        std::uint64_t time;
        VcdWriter::Id signal;
        Change kind;
        double value;
        std::string text = {};
    };

    void addsignals();
    void addlines();
    void put(std::uint64_t time, VcdWriter::Id signal, double value, Change kind = Change::wire);
    void settext(std::uint64_t time, VcdWriter::Id signal, const std::string& text);
    void write(const Event& event);
    void flush(std::int64_t before);
    void begin(const sim::Socket& socket);
    void group(Call call, std::int32_t a, std::int32_t b, std::int32_t c = 0,
               const std::string& answer = {});
    void take(const Step& step);
    void sampletdo(const sim::Socket& socket, std::uint8_t reg);
    void line(std::uint64_t time, VcdWriter::Id signal, const sim::Socket& s, sim::Line l);

    VcdWriter file_;
    std::uint8_t prgmode_;
    const sim::JtagLines* jtag_;
    std::unique_ptr<Grouper> grouper_;  // nullptr: no lines that could be told
    VcdWriter::Id vcc_ = 0, vpp0_ = 0, vpp1_ = 0, vccon_ = 0, vppon_ = 0, gndon_ = 0;
    VcdWriter::Id operation_ = 0, statement_ = 0, row_ = 0;
    VcdWriter::Id tms_ = 0, tck_ = 0, tdi_ = 0, tdo_ = 0;                 // JTAG
    VcdWriter::Id data_ = 0, direction_ = 0, strobe_ = 0, deselect_ = 0;  // byte port
    VcdWriter::Id address_ = 0, read_ = 0, we_ = 0, ce_ = 0, oe_ = 0;     // parallel lines

    std::deque<Event> held_;  // until the statement that they belong to is known
    std::int64_t number_ = 0;
    std::uint64_t now_ = 0;
    std::int64_t rows_ = 0;
    bool tckhigh_ = false;
    int tdolevel_ = -1;  // -1: not known
};

}  // namespace keld2::host

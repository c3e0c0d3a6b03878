#include "host/svf/svftask.h"

#include <array>

#include "host/hosterror.h"
#include "jtag/sdrstatement.h"
#include "platform/fault.h"
#include "sim/logicchip.h"

namespace keld2::host {

namespace {

namespace instruction = sim::logicinstruction;

struct TaskRow {
    std::string_view name;
    SvfTask task;
    bool needsdata;
};

constexpr std::array tasks{
    TaskRow{"id", SvfTask::id, false},        TaskRow{"blank", SvfTask::blank, false},
    TaskRow{"erase", SvfTask::erase, false},  TaskRow{"program", SvfTask::program, true},
    TaskRow{"verify", SvfTask::verify, true}, TaskRow{"secure", SvfTask::secure, false},
};

constexpr std::size_t codebits = 32;
constexpr int codereads = 10;  // of the family that checks its code by ten rows

SvfBits bitsof(std::uint64_t value, std::size_t count) {
    SvfBits bits(count);
    for (std::size_t i = 0; i < count; ++i) bits[i] = (value >> i & 1) != 0;
    return bits;
}

class TextWriter {
  public:
    TextWriter(const LogicDevice& device, std::span<const std::uint8_t> cells, SvfLayout layout)
        : device_(device), cells_(cells), layout_(layout) {}

    std::string write(SvfTask task) {
        text_ = "! " + device_.name + "\n";
        checkcode();
        switch (task) {
            case SvfTask::id:
                break;
            case SvfTask::erase:
                enable();
                pulse(instruction::erase, device_.erasetime);
                readrows(true);
                break;
            case SvfTask::blank:
                readrows(true);
                break;
            case SvfTask::program:
                programrows();
                readrows({});
                break;
            case SvfTask::verify:
                readrows({});
                break;
            case SvfTask::secure:
                enable();
                pulse(instruction::secure, device_.securetime);
                readrows(false);
                break;
        }
        return text_;
    }

  private:
    void sir(std::uint32_t code) { text_ += svfsir(device_.instructionbits, code); }
    void enable() { sir(instruction::enable); }
    void pulse(std::uint32_t code, std::int64_t microseconds) {
        sir(code);
        text_ += svfpulse(*device_.wiring, microseconds);
    }

    void checkcode() {
        const bool tenrows = device_.procedure->codecheck.rows == CodeCheck::Rows::firstten;
        const std::size_t bits = tenrows ? device_.registerbits() : codebits;
        const SvfBits code = bitsof(device_.code, bits);
        sir(instruction::devicecode);
        for (int i = 0; i < (tenrows ? codereads : 1); ++i)
            text_ += svfread(layout_, code, SvfBits(bits, true));
    }

    void firstrow() {
        sir(instruction::address);
        text_ += svfdrive(SvfBits(sim::logicaddressbits));
    }

    void programrows() {
        enable();
        firstrow();
        sir(instruction::program);
        for (std::size_t row = 0; row < device_.rows; ++row) {
            text_ += svfdrive(rowbits(row, {}));
            text_ += svfpulse(*device_.wiring, device_.programtime);
        }
        pulse(instruction::done, device_.programtime);
    }

    // level: of all cells; none: as the fuse map has them.
    SvfBits rowbits(std::size_t row, std::optional<bool> level) const {
        SvfBits bits(device_.registerbits());
        for (std::size_t i = 0; i < device_.width; ++i) {
            const std::size_t cell = row * device_.width + i;
            bits[i] = level.value_or(cell >= cells_.size() || cells_[cell] != '0');
        }
        return bits;
    }

    void readrows(std::optional<bool> level) {
        enable();
        firstrow();
        sir(instruction::read);
        SvfBits mask(device_.registerbits());
        std::fill_n(mask.begin(), device_.width, true);
        for (std::size_t row = 0; row < device_.rows; ++row) {
            text_ += svfread(layout_, rowbits(row, level), mask);
        }
    }

    const LogicDevice& device_;
    std::span<const std::uint8_t> cells_;
    SvfLayout layout_;
    std::string text_;
};

// Whether the plug-in stores a row that is written in the layout.
bool storesrow(const LogicDevice& device, SvfLayout layout) {
    const std::size_t bits = device.registerbits();
    const std::string text = svfread(layout, SvfBits(bits), SvfBits(bits, true));
    SvfReader reader({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
    reader.readcounted();
    SdrStatement statement;
    try {
        readsdr(reader, *device.procedure->sdrrules, device.fuses, 0, statement);
    } catch (const RunFault&) {
        return false;
    }
    return statement.counted && !statement.expect.empty();
}

}  // namespace

std::optional<SvfTask> tasknamed(std::string_view name) {
    for (const TaskRow& row : tasks)
        if (row.name == name) return row.task;
    return std::nullopt;
}

std::string tasknames() {
    std::string names;
    for (const TaskRow& row : tasks) names += (names.empty() ? "" : ", ") + std::string(row.name);
    return names;
}

bool needsdata(SvfTask task) {
    for (const TaskRow& row : tasks)
        if (row.task == task) return row.needsdata;
    return false;
}

std::vector<std::uint8_t> cellsfrom(const std::vector<BufferPart>& parts) {
    std::vector<std::uint8_t> cells;
    for (const BufferPart& part : parts) {
        const auto end = static_cast<std::size_t>(part.offset) + part.bytes.size();
        if (cells.size() < end) cells.resize(end, '1');
        std::copy(part.bytes.begin(), part.bytes.end(),
                  cells.begin() + static_cast<std::ptrdiff_t>(part.offset));
    }
    return cells;
}

std::string makesvf(const LogicDevice& device, SvfTask task, std::span<const std::uint8_t> cells,
                    SvfLayout layout) {
    if (device.rows == 0)
        throw HostError(exitstatus::usage, device.name +
                                               ": its instructions are not known, expected a "
                                               "simulated chip of kind \"logic\"");
    if (!storesrow(device, layout))
        throw HostError(exitstatus::usage, "a text in layout " + std::string(nameof(layout)) +
                                               " compares no row of " + device.name);
    return TextWriter(device, cells, layout).write(task);
}

std::optional<std::int64_t> cellof(const LogicDevice& device, std::int32_t row, std::int32_t bit) {
    // The rows of the device code come first.
    const bool tenrows = device.procedure->codecheck.rows == CodeCheck::Rows::firstten;
    const std::int64_t chiprow = row - (tenrows ? codereads : 1);
    const auto rows = static_cast<std::int64_t>(device.rows);
    const auto width = static_cast<std::int64_t>(device.width);
    if (chiprow < 0 || chiprow >= rows || bit >= width) return std::nullopt;
    return chiprow * width + bit;
}

}  // namespace keld2::host

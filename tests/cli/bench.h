// A folder with a chip and files for it, and keld2 commands on that chip.
#pragma once

#include <gmock/gmock.h>

#include "cli/program.h"
#include "common/madefolder.h"
#include "host/files/intelhex.h"

namespace keld2::test {

class Bench : public ::testing::Test {
  protected:
    // keld2 -d DEVICE -p sim:image=CHIP[,fault=...] and the arguments behind them.
    std::vector<std::string> command(std::vector<std::string> arguments) const {
        std::string programmer = "sim:image=" + chip().string();
        for (const std::string& fault : faults_) programmer += ",fault=" + fault;
        arguments.insert(arguments.begin(), {"-d", device_, "-p", programmer});
        return arguments;
    }
    ProgramResult keld2(const std::vector<std::string>& arguments) const {
        return Program(command(arguments)).finish();
    }
    // The same for steps that are not what the test is about.
    void mustwork(const std::vector<std::string>& arguments) const {
        const ProgramResult result = keld2(arguments);
        ASSERT_EQ(result.status, 0) << ::testing::PrintToString(arguments) << result.err;
    }

    std::filesystem::path chip() const { return folder_ / "chip"; }
    std::filesystem::path file(const std::string& name) const { return folder_ / name; }
    std::string hex(const std::string& name, std::vector<host::Segment> segments) const {
        host::Image image;
        image.segments = std::move(segments);
        return folder_.file(name, host::writeintelhex(image)).string();
    }

    MadeFolder folder_;
    std::string device_ = "serial-2k";
    std::vector<std::string> faults_;
};

// Bytes that differ from their neighbours.
inline std::vector<std::uint8_t> somebytes(std::size_t count) {
    std::vector<std::uint8_t> bytes;
    for (std::size_t i = 0; i < count; ++i)
        bytes.push_back(static_cast<std::uint8_t>(i * 37 + i / 256));
    return bytes;
}

}  // namespace keld2::test

// Script: what a programmer answers in a run of a JTAG window, and what it has been asked.
#pragma once

#include <algorithm>
#include <deque>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "external/usbtransport.h"
#include "jtag/recordingdevcore.h"
#include "plugin/clskeld2.h"

namespace keld2::testing {

using Bytes = std::vector<std::uint8_t>;
using Bits = std::string;  // of '0' and '1', the first bit first

struct Script {
    explicit Script(std::uint8_t behind) : rest(behind) {}

    // The components of a module that lives as long as the script.
    External external();

    std::vector<std::optional<Bytes>> bulk;  // in order; none: a failed transfer
    std::uint8_t rest;                       // the bytes behind what is given
    std::size_t bulkreads = 0;               // made so far
    std::deque<std::uint8_t> samples;        // of the direct reads
    RecordingDevCore* devcore = nullptr;     // once a run has begun
};

class ScriptedTransport final : public UsbTransport {
  public:
    explicit ScriptedTransport(Script& script) : script_(script) {}

    int usbcomwrite(std::span<const std::uint8_t> frame) override {
        std::string text = "frame";
        for (const std::uint8_t byte : frame) text += " " + std::to_string(byte);
        script_.devcore->calls.push_back(text);
        return 0;
    }
    void usbbulkread(std::span<std::uint8_t> target, std::uint8_t* result) override {
        script_.devcore->calls.push_back("usbbulkread " + std::to_string(target.size()));
        std::ranges::fill(target, script_.rest);
        const std::size_t at = script_.bulkreads++;
        const bool given = at < script_.bulk.size();
        const bool failed = given && !script_.bulk[at];
        if (given && !failed)
            std::copy_n(script_.bulk[at]->begin(),
                        std::min(script_.bulk[at]->size(), target.size()), target.begin());
        *result = static_cast<std::uint8_t>(failed ? BulkState::failed : BulkState::done);
    }
    int usbbulkwrite(std::span<const std::uint8_t>) override { return 0; }

  private:
    Script& script_;
};

inline External Script::external() {
    return {.devcore =
                [this](SharedVariables&) {
                    auto created = std::make_unique<RecordingDevCore>();
                    devcore = created.get();
                    devcore->samples = samples;
                    return created;
                },
            .transport =
                [this](SharedVariables&) { return std::make_unique<ScriptedTransport>(*this); },
            .helper = {}};
}

// count irregular bits, the same for the same seed.
inline Bits pattern(std::int32_t count, unsigned seed) {
    std::mt19937 random(seed);
    Bits bits;
    for (std::int32_t i = 0; i < count; ++i) bits += (random() & 4) != 0 ? '1' : '0';
    return bits;
}

}  // namespace keld2::testing

// The replay file: the answers of a whole programmer as text.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string_view>
#include <vector>

#include "platform/platform.h"

namespace keld2::host {

// The answers of one operation, taken in their order. One that stays is given for all further
// calls; where none is left, the operation's default answers.
template <typename Answer>
class Answers {
  public:
    void add(Answer answer, bool stays) { list_.push_back({std::move(answer), stays}); }
    // The answer of the next call, nullptr when none is left.
    const Answer* next() {
        if (at_ == list_.size()) return nullptr;
        const Entry& entry = list_[at_];
        if (!entry.stays) ++at_;
        return &entry.answer;
    }

  private:
    struct Entry {
        Answer answer;
        bool stays;
    };
    std::vector<Entry> list_;
    std::size_t at_ = 0;
};

// What a transferwait answers: well, with bytes laid over ibuf1 from byte 0, or failed.
struct TransferAnswer {
    bool well = true;
    std::vector<std::uint8_t> status;
};

struct BulkReadAnswer {
    enum class Kind {
        bytes,   // from the target's begin, the remainder is rest
        failed,  // the result cell goes to 4
        hanging  // the result cell stays at 1
    };
    Kind kind = Kind::bytes;
    std::vector<std::uint8_t> bytes;
    std::uint8_t rest = 255;
};

struct Replay {
    Answers<int> readycheck;
    Answers<int> modeselect;
    Answers<int> modeselect2;
    Answers<int> modeselect3;
    Answers<int> armready;
    Answers<int> regread;
    Answers<int> usbcomwrite;
    Answers<int> usbbulkwrite;
    Answers<TransferAnswer> transferwait;
    Answers<BulkReadAnswer> usbbulkread;
    Answers<BoxAnswer> messagebox;
    std::vector<std::int64_t> stops;  // ascending trace lines, each a stop that happens once
};

// Files that the text names are relative to folder, and are read at once. Throws HostError: 66
// when a file cannot be opened, 65 with file, line, what is wrong and what was expected.
Replay readreplay(const std::filesystem::path& path, const std::filesystem::path& folder);

}  // namespace keld2::host

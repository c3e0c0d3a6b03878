// When an SVF run compares the rows that it has stored, and which: by its procedure, in between and
// at the end of the text.
#pragma once

#include <cstdint>
#include <optional>

#include "families/svffamily.h"

namespace keld2 {

struct ComparedRows {
    std::int32_t first = 0;
    std::int32_t last = 0;  // none are compared when it lies below first
    bool rearms = false;    // the read-back begins anew behind them
};

class ComparisonPlan {
  public:
    // procedure must outlive the plan; fuses: tlength[0].
    ComparisonPlan(const SvfProcedure& procedure, std::int32_t fuses);

    // Behind each SDR statement. rowcount: rows stored so far.
    std::optional<ComparedRows> behindsdr(std::int32_t rowcount);
    // Behind each line. rowmark: rows that the read-back has; readcount: its bytes.
    std::optional<ComparedRows> behindline(std::int32_t rowmark, std::int32_t readcount);
    // Behind the last line that is read. beyondlimit: the text goes on.
    std::optional<ComparedRows> atend(std::int32_t rowcount, std::int32_t rowmark,
                                      bool beyondlimit) const;

  private:
    std::int32_t half() const;

    const SvfProcedure& procedure_;
    std::int32_t fuses_;
    std::int32_t total_;
    std::int32_t verified_ = 0;  // rows compared while rolling
    bool compared208_ = false;
};

}  // namespace keld2

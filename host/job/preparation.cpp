#include "host/job/preparation.h"

#include <algorithm>

namespace keld2::host {

namespace {

constexpr std::string_view mainbuffer = "ibuffer";

void applyall(const Job& job, SharedVariables& s, bool buffers) {
    for (const SharedSetting& setting : job.shared)
        if (blocktable[setting.row].name.starts_with(mainbuffer) == buffers) apply(setting, s);
}

// Places outside the buffer are left out: a job whose buffer cannot be made has none.
void overlay(SharedVariables& s, std::int64_t offset, const std::vector<std::uint8_t>& bytes) {
    if (bytes.empty()) return;
    const auto length = static_cast<std::int64_t>(bytes.size());
    if (s.ibuffer.holds(offset, offset + length - 1))
        std::copy(bytes.begin(), bytes.end(), s.ibuffer.data() + offset);
}

}  // namespace

void prepare(const Job& job, SharedVariables& s) {
    s.maprows(job.num, {});
    applyall(job, s, false);
    s.mapbuffers({});
    const BufferPlan& plan = job.buffer;
    std::fill_n(s.ibuffer.data(), s.ibuffer.size(), plan.fill);
    for (const Segment& segment : plan.image.segments)
        overlay(s, plan.offset + segment.address, segment.bytes);
    applyall(job, s, true);
    for (const BufferPatch& patch : plan.patches) overlay(s, patch.offset, patch.bytes);
}

}  // namespace keld2::host

#include "run/startup.h"

namespace keld2 {

void powersocket(const RunContext& run) {
    SharedVariables& s = run.s;
    DevCore& d = run.devcore;
    d.setvcc(s.bvcc[0] * 10);
    if (s.bvpp[0] > 0) {
        d.setvpp(s.bvpp[0] * 10, 0);
        d.setvpp(s.bvpp[0] * 10, 1);
    }
    d.setgndpin(s.bgndpin[0], 1);
    if (s.bgndpin[1] > 0) d.setgndpin(s.bgndpin[1], 1);
    d.waitshort(400);
    switchvccpins(run, 1);
    d.waitshort(100);
}

void switchvccpins(const RunContext& run, std::uint8_t on) {
    run.devcore.setvccpin(run.s.bvccpin[0], on);
    if (run.s.bvccpin[1] > 0) run.devcore.setvccpin(run.s.bvccpin[1], on);
}

}  // namespace keld2

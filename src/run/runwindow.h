// RunWindow: one run, from its first hardware call to its last.
//
// A window lives for one run. It carries out the operation or sequence that the shared variables
// ask for, keeps the log and the result cell, and shows its caption and Stop button through the
// platform. The family windows derive and give the start-up and the operations.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "run/frames.h"
#include "run/notes.h"
#include "run/runcontext.h"
#include "run/waits.h"

namespace keld2 {

class RunWindow {
  public:
    // name: as the trace and the hosts know the window.
    RunWindow(const RunContext& run, std::string_view name);
    virtual ~RunWindow();
    RunWindow(const RunWindow&) = delete;
    RunWindow& operator=(const RunWindow&) = delete;

    void wepm0();                          // the whole run; the window is unloaded at its end
    void runop(std::int16_t op);           // one operation with its log lines and its result line
    int hwstart() { return dohwstart(); }  // 0 ready, 1 refused, 2 failed in modeselect
    int chipidcheck() { return dochipidcheck(); }  // 0 go on, 1 abort
    // Note and VCC of a verify stage: 0 nominal, 1 high margin, 2 low margin.
    void prgnote1(std::uint8_t stage);

    void pexitclick() { s().prgresult.release(0, result::stopped); }

    // Whether the supplies may be on.
    bool hardwarestarted() const { return started_; }

    const RunContext& run() const { return run_; }
    SharedVariables& s() const { return run_.s; }
    DevCore& devcore() const { return run_.devcore; }
    Platform& platform() const { return run_.platform; }
    std::int32_t first() const { return first_; }  // first chip address of the job
    std::int32_t last() const { return last_; }    // last chip address of the job
    std::int32_t pwtefield() const { return pwte_; }
    std::int64_t progressstep() const { return progressstep_; }
    // Serves the message loop from inside an operation that has more to do: it does not wait for
    // events, as a service of an idle loop would.
    void service() const {
        run_.platform.wake();
        run_.platform.service();
    }
    bool stopasked() const { return s().prgresult.acquire(0) == result::stopped; }
    void caption(std::u16string_view text);

    // verifypass() once for each stage that wlverifyvcc[0] asks for, with its note before it. A
    // failed pass at high VCC skips the one at low VCC.
    template <typename Pass>
    void verifystages(Pass verifypass);

  protected:
    // What the window does with its Stop button when operation op starts.
    enum class StopButton { hidden, shown, takenback };

    int startup();  // the common head; marks the hardware as started

  private:
    virtual int dohwstart() = 0;
    virtual int dochipidcheck() { return status::goon; }
    virtual bool checksid() const { return false; }
    virtual StopButton stopbutton(std::int16_t op) const = 0;
    virtual void dooperation(std::int16_t op) = 0;

    void load();
    void unload();
    void change(WindowChange::Kind kind, int twips = 0);
    void shrink();
    void hidepexit() { change(WindowChange::Kind::pexithidden); }
    void chooseoperation();
    void autosequence();
    bool asktogoon();  // after a failed blank check
    void showstopbutton(std::int16_t op);
    void finish(double start);

    RunContext run_;
    std::string_view name_;
    bool loaded_ = false;
    bool started_ = false;
    std::int32_t first_ = 0;
    std::int32_t last_ = 0;
    std::int32_t pwte_ = 0;
    std::int64_t progressstep_ = 1;
};

template <typename Pass>
void RunWindow::verifystages(Pass verifypass) {
    if (s().wlverifyvcc[0] == 0) {
        prgnote1(0);
        verifypass();
        return;
    }
    prgnote1(1);
    verifypass();
    if (s().prgresult.acquire(0) != result::well) return;
    prgnote1(2);
    verifypass();
}

}  // namespace keld2

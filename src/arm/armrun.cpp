#include "arm/armrun.h"

#include "arm/image.h"
#include "arm/operations.h"
#include "arm/wire.h"
#include "platform/numbers.h"
#include "shared/components.h"

namespace keld2 {

namespace {

constexpr std::uint8_t adaptorpin = 20;       // of setvpppin
constexpr std::uint8_t datafilebuffer = 128;  // buftype[0]: the data lie in a file

// How a run is left; all but silent note the elapsed time.
enum class Exit {
    timed,
    abort,         // result 3 and its note
    poweredabort,  // the same, with the power taken off first
    silent
};

// Does work; a fault in it is that exit.
template <typename Work>
Exit guarded(Exit onfault, Work work) {
    try {
        return work();
    } catch (const ComponentMissing&) {
        throw;
    } catch (const std::exception&) {
        return onfault;
    }
}

bool startupcall(const ArmContext& c, const ArmStartupCall& call) {
    using Kind = ArmStartupCall::Kind;
    const auto mode = [&] { return checkedbyte(c.s.figmode[0] + call.add); };
    switch (call.kind) {
        case Kind::ready:
            return c.devcore.armready() != 1;
        case Kind::modeselect2:
            return c.devcore.modeselect2(mode(), 0) != 2;
        case Kind::modeselect3:
            return c.devcore.modeselect3(mode(), 0) != 2;
        case Kind::switchadaptor:
            c.devcore.setvpppin(adaptorpin, 1);
            return true;
        case Kind::none:
            return true;
    }
    return true;
}

bool startup(const ArmContext& c, const ArmStartupRow& row) {
    for (const ArmStartupCall& call : row.calls)
        if (!startupcall(c, call)) return false;
    return true;
}

// False: the connection has failed.
bool checkfirmware(const ArmContext& c) {
    sendfirmwarequery(c);
    do {
        if (!nextrecord(c)) return false;
    } while (c.s.ibuf1[0] != armdone);
    if (c.s.ibuf1[2] != c.s.wsign[1]) appendlog(c.s, u"\nProgrammer soft need update now !!!\n\n");
    return true;
}

int operate(const ArmJob& job) {
    switch (job.op) {
        case operation::autoprogram:
        case operation::program:
            return job.c.s.buftype[0] == datafilebuffer ? armprogramfile(job) : armprogram(job);
        case operation::read:
        case operation::compare:
            return armread(job);
        case operation::verify:
            return armverify(job);
        default:
            return armcommand(job);
    }
}

Exit ending(const ArmJob& job) {
    SharedVariables& s = job.c.s;
    job.c.devcore.powerdown();
    if (s.prgresult.acquire(0) == result::well)
        job.c.devcore.signalpass(0);
    else
        job.c.devcore.signalfail(0);
    const std::uint8_t ended = s.prgresult.acquire(0);  // a stop may have come meanwhile
    if (ended == result::timedout) return Exit::poweredabort;
    if (ended == result::badalgorithm)
        appendlog(s, u"Read algo file error!\n");
    else
        appendresult(s, job.op, ended);
    return Exit::timed;
}

Exit unusableimage(const ArmContext& c) {
    c.s.prgresult.release(0, result::badalgorithm);
    appendlog(c.s, u"Read algo file error!\n");
    return Exit::timed;
}

// From the firmware query on, when the image stands.
Exit runloaded(const ArmJob& job) {
    const ArmContext& c = job.c;
    if (!checkfirmware(c) || !loadconfiguration(c)) return Exit::poweredabort;
    if (isset(c.s.chipidtestmode[0]) && armdevid(job) != armstatus::goon) {
        c.devcore.powerdown();
        c.s.prgresult.release(0, result::stopped);
        return Exit::silent;
    }
    appendheadline(c.s, c.s.MainmnuPrg.textorempty(job.op));
    c.platform.service();
    if (operate(job) != armstatus::goon) return Exit::poweredabort;
    return ending(job);
}

Exit carryout(const ArmContext& c, const ArmProfile& profile) {
    SharedVariables& s = c.s;
    const ArmJob job{.c = c, .profile = profile, .op = s.prgresult[1]};
    if (c.devcore.readycheck() == 1) return Exit::abort;
    if (s.figvol[1] == s.modeltype[2]) sendannounce(c);
    const ArmStartupRow& row = startuprow(profile, s.modeltype[0], isset(s.usbable[3]));
    if (!startup(c, row)) return Exit::abort;
    switch (loadimage(job, row)) {
        case ImageLoad::loaded:
            return guarded(Exit::poweredabort, [&] { return runloaded(job); });
        case ImageLoad::unusable:
            return unusableimage(c);
        case ImageLoad::stopped:
            return ending(job);
        case ImageLoad::brokenoff:
            break;
    }
    return Exit::abort;
}

}  // namespace

void armrun(const ArmContext& c, const ArmProfile& profile) {
    const double start = c.platform.secondssincemidnight();
    Exit exit = guarded(Exit::abort, [&] { return carryout(c, profile); });
    if (exit == Exit::poweredabort)
        exit = guarded(Exit::abort, [&] {
            c.devcore.powerdown();
            return Exit::abort;
        });
    // A text that cannot be read must not cost the lines and cells behind it.
    guarded(Exit::abort, [&] {
        if (exit != Exit::abort) return exit;
        c.s.prgresult.release(0, result::timedout);
        appendlog(c.s, c.s.prgnote[note::timedout].text() + u"\n");
        return exit;
    });
    guarded(Exit::abort, [&] {
        if (exit != Exit::silent) appendelapsed(c.s, c.platform, start);
        return exit;
    });
    c.s.prgmode[1] = 0;
}

}  // namespace keld2

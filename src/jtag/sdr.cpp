#include "jtag/sdr.h"

#include "run/frames.h"
#include "run/notes.h"
#include "run/waits.h"

namespace keld2 {

namespace {

constexpr std::int32_t codewidth = 32;  // bits of a device code
constexpr std::int32_t tenrows = 10;
constexpr std::int32_t tolerantrow = 2;  // of the first ten

}  // namespace

void SdrExecutor::SDRdate(const SdrStatement& statement) {
    if (statement.kind == SdrStatement::Kind::givenup) return;
    if (statement.kind == SdrStatement::Kind::drive) return drive(statement);
    store(statement);
    read(statement.nbits);
    if (state_.rowcount == check_.rowcount) checkcode(statement.nbits);
}

void SdrExecutor::SDRdate95(const SdrStatement& statement) {
    switch (statement.kind) {
        case SdrStatement::Kind::givenup:
            return;
        case SdrStatement::Kind::drive:
            return drive(statement);
        case SdrStatement::Kind::replay:
            store(statement);
            return replay(statement);
        case SdrStatement::Kind::read:
            store(statement);
            read95(statement.nbits);
            if (statement.nbits != codewidth) return;
            state_.rowcount = 1;
            checkcode(statement.nbits);
    }
}

void SdrExecutor::store(const SdrStatement& statement) {
    if (!statement.counted) return;
    state_.rows.store(static_cast<std::size_t>(state_.rowcount), statement.expect, statement.mask);
    ++state_.rowcount;
}

// Whole bytes by the shift code, the last one bit by bit, since TMS rises with the last bit. Ends
// in Update-DR.
void SdrExecutor::drive(const SdrStatement& statement) {
    DevCore& d = run_.devcore;
    const std::uint8_t code = lines_.family().drivecode;
    lines_.tdilow();
    lines_.goshiftdr();
    const std::size_t packed = statement.tdi.size() - 1;
    for (std::size_t i = 0; i < packed; ++i) d.qregwrite(statement.tdi[i], code);
    const std::int32_t rest = statement.nbits % 8;
    lines_.drivebits(rest == 0 ? 8 : rest, statement.tdi[packed], true);
    lines_.tckpulse();
}

// Ends in Run-Test/Idle.
void SdrExecutor::read(std::int32_t nbits) {
    DevCore& d = run_.devcore;
    const std::uint8_t code = lines_.family().readcode;
    const std::int32_t whole = nbits / 8;
    const std::int32_t rest = nbits % 8;
    lines_.tdilow();
    lines_.goshiftdr();
    const std::int32_t packed = rest == 0 ? whole - 1 : whole;
    for (std::int32_t i = 0; i < packed; ++i) d.qregwrite(shiftcode::shiftinvalue, code);
    lines_.readbits(rest == 0 ? 8 : rest, true);
    lines_.tdilow();
    lines_.tmshigh();
    lines_.tckpulse();
    lines_.tmslow();
    lines_.tckpulse();
}

// A device code, or one bit alone of any other width. Ends in Run-Test/Idle.
void SdrExecutor::read95(std::int32_t nbits) {
    lines_.tdilow();
    lines_.goshiftdr();
    if (nbits == codewidth) {
        for (int i = 0; i < 3; ++i) {
            run_.devcore.qregwrite(shiftcode::shiftinvalue, lines_.family().readcode);
            ++lines_.levels().readcount;
        }
        lines_.readbits(7, false);
    }
    lines_.readbits(1, true);
    lines_.tdilow();
    lines_.tckpulse();
    lines_.tmslow();
    lines_.tckpulse();
}

// Shifts TDI and samples TDO bit by bit; the two bits behind the whole bytes go out as 0 and are
// not sampled. Ends in Run-Test/Idle.
void SdrExecutor::replay(const SdrStatement& statement) {
    lines_.tdilow();
    lines_.goshiftdr();
    for (const std::uint8_t byte : statement.tdi)
        for (std::int32_t j = 0; j < 8; ++j) {
            lines_.tdidrive((byte >> j & 1) != 0);
            lines_.tdosample();
            lines_.tckpulse();
        }
    lines_.tdilow();
    lines_.tckpulse();
    lines_.tmshigh();
    lines_.tdilow();
    lines_.tckpulse();
    lines_.tckpulse();
    lines_.tmslow();
    lines_.tckpulse();
    ++state_.rowmark;
}

void SdrExecutor::checkcode(std::int32_t nbits) {
    run_.devcore.qrun();
    run_.devcore.waitshort(20);
    armreadback(run_);
    lines_.levels().readcount = 0;
    if (ubulkread0(run_, readbacklength) == status::goon && codeagrees(nbits)) {
        armreadback(run_);
        return;
    }
    SharedVariables& s = run_.s;
    s.MainRtstr[0] =
        u">>" + owntext(s, TextId::warning) + owntext(s, TextId::devicecodeerror) + u"\n";
    s.prgresult.release(0, result::failed);
}

bool SdrExecutor::codeagrees(std::int32_t nbits) const {
    const std::int32_t rest = nbits % 8;
    const std::int32_t packed = rest == 0 ? nbits / 8 - 1 : nbits / 8;
    const std::int32_t bits = rest == 0 ? 8 : rest;
    switch (check_.rows) {
        case CodeCheck::Rows::code32:
            return rowagrees(0, 0, 3, 8, false);
        case CodeCheck::Rows::ownwidth:
            return rowagrees(0, 0, packed, bits, false);
        case CodeCheck::Rows::firstten:
            break;
    }
    if (rest != 0) return true;
    for (std::int32_t row = 0; row < tenrows; ++row)
        if (!rowagrees(row, row * (packed + bits), packed, bits, row == tolerantrow)) return false;
    return true;
}

bool SdrExecutor::rowagrees(std::int32_t row, std::int32_t place, std::int32_t whole,
                            std::int32_t bits, bool bytesmaydiffer) const {
    const auto& ibuf2 = run_.s.ibuf2;
    for (std::int32_t i = 0; i < whole && !bytesmaydiffer; ++i)
        if (((state_.rows.expected(row, i) ^ ibuf2[place + i]) & state_.rows.mask(row, i)) != 0)
            return false;
    const std::uint8_t expected = state_.rows.expected(row, whole);
    const std::uint8_t mask = state_.rows.mask(row, whole);
    for (std::int32_t i = 0; i < bits; ++i)
        if (!bitagrees(ibuf2[place + whole + i], lines_.levels().tdomask(), expected, mask, i))
            return false;
    return true;
}

}  // namespace keld2

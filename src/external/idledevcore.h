// IdleDevCore: a programmer that does nothing and answers that all is well; derive to watch a part.
#pragma once

#include "external/devcore.h"

namespace keld2 {

class IdleDevCore : public DevCore {
  public:
    void setvcc(std::int32_t) override {}
    void setvpp(std::int32_t, std::uint8_t) override {}
    void setgndpin(std::uint8_t, std::uint8_t) override {}
    void setvccpin(std::uint8_t, std::uint8_t) override {}
    void setvpppin(std::uint8_t, std::uint8_t) override {}
    void drivercommit() override {}
    void powerdown() override {}
    void signalpass(std::uint8_t) override {}
    void signalfail(std::uint8_t) override {}
    int readycheck() override { return 0; }
    void readyfail() override {}
    int modeselect(std::uint8_t) override { return 0; }
    int modeselect2(std::uint8_t, int) override { return 0; }
    int modeselect3(std::uint8_t, int) override { return 0; }
    int armready() override { return 0; }
    void regwrite(std::int32_t, std::uint8_t) override {}
    void qregwrite(std::int32_t, std::uint8_t) override {}
    std::uint8_t regread(std::uint8_t) override { return 0; }
    void qregread(std::uint8_t) override {}
    void waitshort(std::int32_t) override {}
    void qwaitshort(std::int32_t) override {}
    void waitlong(std::int32_t) override {}
    void qwaitlong(std::int32_t) override {}
    void qrun() override {}
    void buswrite(std::int32_t, std::uint8_t, std::uint8_t) override {}
    void qbuswrite(std::int32_t, std::uint8_t, std::uint8_t) override {}
    void busconfig(std::int32_t, std::uint8_t, std::uint8_t) override {}
    void qbusconfig(std::int32_t, std::uint8_t, std::uint8_t) override {}
    int checkbyte(std::int16_t, std::int32_t, int) override { return 0; }
    int checkword(std::uint8_t, std::uint8_t, std::int32_t, int, int) override { return 0; }
    bool transferwait(std::uint8_t) override { return true; }
    void loadalgobuf(std::int32_t&) override {}
};

}  // namespace keld2

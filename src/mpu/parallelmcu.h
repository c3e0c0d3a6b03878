// The parallel microcontroller families, mode bytes 22 and 23.
#pragma once

#include "mpu/usbkel2mpuprg.h"

namespace keld2 {

// What both have: start-up, reading, and the ends of their programs and erases.
class ParallelMcu : public usbkel2mpuprg {
  public:
    using usbkel2mpuprg::usbkel2mpuprg;

    void parallelread(int mode);  // pin by pin, in blocks of 16384 bytes
    void fastread(int mode);      // walked by the programmer itself, in blocks of 32768 bytes

  protected:
    bool readpossible() const;
    std::int32_t base() const;  // high address bits of parallelread and the page writes
    void buspulse(std::int32_t address, std::uint8_t data);
    void restartforverify();
    void endpulses();
    void announceblankcheck();

  private:
    void familystartup() override;
    std::int32_t fastbase() const;  // high address bits of fastread
    bool queuereadblock(std::int32_t from, std::int32_t to);
    bool checkblock(std::int32_t from, std::int32_t to, int mode);
    bool fetchfastblock(std::int32_t from, std::int32_t count);
};

// 22: programs a byte at a time.
class ByteMcu final : public ParallelMcu {
  public:
    using ParallelMcu::ParallelMcu;

    void byteprogram();
    void byteerase();

  private:
    bool possible(std::int16_t op) const override;
    void carryout(std::int16_t op) override;

    std::int64_t dataindex(std::int32_t a) const;
    bool datainbuffer() const;
    bool progresspoint(std::int32_t a);
    bool queuebytes(void (ByteMcu::*queuebyte)(std::int32_t, std::uint8_t));
    void queueprogrambyte(std::int32_t address, std::uint8_t data);
    void queueclearbyte(std::int32_t address, std::uint8_t data);
    void closelist();
    void endprogramming();
    bool clearbytes();
    void pollbyteerase();
};

// 23: programs a page at a time.
class PageMcu final : public ParallelMcu {
  public:
    using ParallelMcu::ParallelMcu;

    void pageprogram();
    void pageerase();

  private:
    bool possible(std::int16_t op) const override;
    void carryout(std::int16_t op) override;

    bool programpossible() const;
    void queuepagebytes(std::int32_t a0);
    void pollpageerase();
};

}  // namespace keld2

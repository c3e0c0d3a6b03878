// usbkel2mpuprg: the run window of the microcontroller families.
//
// A family is a row of a table (mpufamilies in usbkel2mpuprg.cpp): its body of the start-up, its
// id read, its operations and the check of a job's numbers that each of them needs.
#pragma once

#include <array>
#include <cstdint>

#include "mpu/serialport.h"
#include "run/runwindow.h"

namespace keld2 {

struct MpuFamily;

class usbkel2mpuprg final : public RunWindow {
  public:
    explicit usbkel2mpuprg(const RunContext& run);

    // The serial family, mode byte 21. mode: 0 read into the buffer, 1 verify, 2 blank check,
    // 3 compare.
    void serialread(int mode);
    void serialprogram();
    void serialerase();
    void serialconfiguration();

    // The parallel families, mode bytes 22 and 23; modes as above.
    void parallelread(int mode);  // pin by pin, in blocks of 16384 bytes
    void fastread(int mode);      // walked by the programmer itself, in blocks of 32768 bytes
    void byteprogram();           // 22: a byte at a time
    void byteerase();
    void pageprogram();  // 23: a page at a time
    void pageerase();

  private:
    friend struct MpuFamilies;

    int dohwstart() override;
    int dochipidcheck() override;
    bool checksid() const override { return true; }
    StopButton stopbutton(std::int16_t) const override { return StopButton::shown; }
    void dooperation(std::int16_t op) override;

    void serialstartup();
    void serialreadid();

    // Serial family: where things lie in the buffer, and the last program address of the job.
    std::int64_t configurationarea() const;  // buffer address of configuration byte 0
    std::int64_t idarea() const;             // buffer address of the ID area
    std::int64_t cutlast() const;            // last, but not beyond the program memory
    bool serialjobpossible(std::int64_t bufferend) const;
    bool serialreadpossible(int mode) const;
    bool serialprogrampossible() const;
    bool serialconfigurationpossible() const;
    std::int32_t queuereadlist();  // answers the address behind the last page
    bool checkprogrammemory(int mode);
    bool checkidarea(std::int32_t a, int mode);
    bool checkconfiguration(std::uint8_t command, std::int64_t address);
    void queuepage(std::uint8_t command, std::int32_t address, std::int64_t from);
    void queueconfiguration(std::uint8_t command, std::uint8_t value);
    void enablewithvpp();
    void restartchip();

    // Parallel families.
    void parallelstartup();
    bool parallelreadpossible(int mode) const;
    bool parallelerasepossible() const { return parallelreadpossible(2); }
    bool byteprogrampossible() const;
    bool byteerasepossible() const;
    bool pageprogrampossible() const;
    std::int32_t base() const;      // high address bits of parallelread and the page writes
    std::int32_t fastbase() const;  // high address bits of fastread
    bool queuereadblock(std::int32_t from, std::int32_t to);
    bool checkblock(std::int32_t from, std::int32_t to, int mode);
    bool fetchfastblock(std::int32_t from, std::int32_t count);
    void buspulse(std::int32_t address, std::uint8_t data);
    bool progresspoint(std::int32_t a);
    std::int64_t dataindex(std::int32_t a) const;
    bool datainbuffer() const;
    bool queuebytes(void (usbkel2mpuprg::*queuebyte)(std::int32_t, std::uint8_t));
    void queueprogrambyte(std::int32_t address, std::uint8_t data);
    void queueclearbyte(std::int32_t address, std::uint8_t data);
    void closelist();
    bool clearbytes();
    void pollbyteerase();
    void pollpageerase();
    void queuepagebytes(std::int32_t a0);
    void restartforverify();
    void endprogramming();
    void endpulses();
    void announceblankcheck();

    const MpuFamily* family_;
    SerialPort port_;
    std::array<std::uint8_t, 3> id_{};
};

}  // namespace keld2

// The serial microcontroller family, mode byte 21.
#pragma once

#include "mpu/serialport.h"
#include "mpu/usbkel2mpuprg.h"

namespace keld2 {

class SerialMcu final : public usbkel2mpuprg {
  public:
    explicit SerialMcu(const RunContext& run) : usbkel2mpuprg(run), port_(run.devcore) {}

    void serialread(int mode);
    void serialprogram();
    void serialerase();
    void serialconfiguration();

  private:
    void familystartup() override;
    void readid(Id& id) override;
    bool possible(std::int16_t op) const override;
    void carryout(std::int16_t op) override;

    // Where things lie in the buffer, and the last program address of the job.
    std::int64_t configurationarea() const;  // buffer address of configuration byte 0
    std::int64_t idarea() const;             // buffer address of the ID area
    std::int64_t cutlast() const;            // last, but not beyond the program memory
    bool jobpossible(std::int64_t bufferend) const;
    bool readpossible(int mode) const;
    bool programpossible() const;
    bool configurationpossible() const;

    std::int32_t queuereadlist();  // answers the address behind the last page
    bool checkprogrammemory(int mode);
    bool checkidarea(std::int32_t a, int mode);
    bool checkconfiguration(std::uint8_t command, std::int64_t address);
    void queuepage(std::uint8_t command, std::int32_t address, std::int64_t from);
    void queueconfiguration(std::uint8_t command, std::uint8_t value);
    void enablewithvpp();
    void restartchip();

    SerialPort port_;
};

}  // namespace keld2

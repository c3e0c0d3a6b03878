// A simulated programmer with a chip, and the shared blocks that its components need.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <memory>
#include <span>
#include <thread>
#include <utility>
#include <vector>

#include "shared/sharedvariables.h"
#include "sim/chipspec.h"
#include "sim/programmer.h"
#include "testmachine.h"

namespace keld2::test {

class SimBench {
  public:
    explicit SimBench(sim::SimSetting setting) : programmer(waking(std::move(setting))) {
        s.map(0, [] { throw RunFault("no memory"); });
    }

    // Waits for the read under way; answers the end that its cell tells.
    BulkState bulkread(std::span<std::uint8_t> target) {
        s.usbpip2readresult.release(0, 0);
        usb->usbbulkread(target, &s.usbpip2readresult[0]);
        for (int ms = 0; ms < 2000; ++ms) {
            const auto state = static_cast<BulkState>(s.usbpip2readresult.acquire(0));
            if (state == BulkState::done || state == BulkState::failed) return state;
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        return BulkState::running;
    }
    void frame(std::vector<std::uint8_t> bytes) {
        bytes.resize(std::max<std::size_t>(bytes.size(), 8));
        EXPECT_EQ(usb->usbcomwrite(bytes), 0);
    }

    std::atomic<int> woken{0};  // by threads of the programmer
    test::TestMachine machine;
    SharedVariables s{machine.memory(), machine.strings()};
    sim::SimProgrammer programmer;
    std::unique_ptr<DevCore> d = programmer.devcore(s);
    std::unique_ptr<UsbTransport> usb = programmer.transport();

  private:
    sim::SimSetting waking(sim::SimSetting setting) {
        setting.wake = [this, own = std::this_thread::get_id()] {
            if (std::this_thread::get_id() != own) ++woken;
        };
        return setting;
    }
};

}  // namespace keld2::test

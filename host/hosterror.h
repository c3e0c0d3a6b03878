// HostError: something that a user has to hear about, with the exit status that goes with it.
#pragma once

#include <stdexcept>
#include <string>

namespace keld2::host {

// Exit statuses of the program keld2. 0 to 4 are those of a run's result cell.
namespace exitstatus {
inline constexpr int well = 0;
inline constexpr int failed = 1;
inline constexpr int stopped = 2;
inline constexpr int timedout = 3;
inline constexpr int badalgorithm = 4;
inline constexpr int usage = 64;         // wrong usage of the command line
inline constexpr int data = 65;          // a job, device, data or replay file that cannot be used
inline constexpr int nofile = 66;        // a file that cannot be opened
inline constexpr int programfault = 70;  // a fault of the program itself
}  // namespace exitstatus

class HostError : public std::runtime_error {
  public:
    // message: what, where, and what was expected, ready to be shown.
    HostError(int status, const std::string& message)
        : std::runtime_error(message), status_(status) {}
    int status() const { return status_; }

  private:
    int status_;
};

}  // namespace keld2::host

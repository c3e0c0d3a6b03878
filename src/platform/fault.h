// RunFault: a run-time error inside a statement or a run.
#pragma once

#include <stdexcept>
#include <string>

namespace keld2 {

// what: the error in words; where: the procedure or variable in which it was found.
class RunFault : public std::runtime_error {
  public:
    explicit RunFault(const std::string& what, const std::string& where = {})
        : std::runtime_error(where.empty() ? what : where + ": " + what) {}
};

}  // namespace keld2

#include "host/catalogue/operations.h"

#include "shared/operations.h"

namespace keld2::host {

const std::vector<Operation>& alloperations() {
    static const std::vector<Operation> operations{
        {"read", operation::read, TextId::read, false, "reads the chip"},
        {"verify", operation::verify, TextId::verify, true,
         "checks the chip against a file, up to the first difference"},
        {"blank", operation::blankcheck, TextId::blankcheck, false,
         "checks that the chip is blank"},
        {"compare", operation::compare, TextId::compare, true,
         "lists all differences between the chip and a file"},
        {"program", operation::program, TextId::program, true, "programs a file and verifies it"},
        {"erase", operation::erase, TextId::erase, false, "erases the chip"},
        {"config", operation::configuration, TextId::progconfig, true,
         "writes the configuration bytes of a file"},
        {"secure", operation::configuration, TextId::secure, false,
         "protects the chip's content from being read"},
    };
    return operations;
}

const Operation* operationnamed(std::string_view name) {
    for (const Operation& one : alloperations())
        if (one.name == name) return &one;
    return nullptr;
}

std::string operationnames() {
    std::string names;
    for (const Operation& one : alloperations())
        names += (names.empty() ? "" : ", ") + std::string(one.name);
    return names;
}

}  // namespace keld2::host

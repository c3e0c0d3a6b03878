#include "host/catalogue/operations.h"

namespace keld2::host {

namespace {

// Operation numbers of the plug-in.
namespace number {
constexpr std::int16_t read = 2;
constexpr std::int16_t verify = 3;
constexpr std::int16_t blankcheck = 4;
constexpr std::int16_t compare = 5;
constexpr std::int16_t program = 6;
constexpr std::int16_t erase = 8;
constexpr std::int16_t configuration = 9;  // or secure, by the family
}  // namespace number

}  // namespace

const std::vector<Operation>& alloperations() {
    static const std::vector<Operation> operations{
        {"read", number::read, TextId::read, false, "reads the chip"},
        {"verify", number::verify, TextId::verify, true,
         "checks the chip against a file, up to the first difference"},
        {"blank", number::blankcheck, TextId::blankcheck, false, "checks that the chip is blank"},
        {"compare", number::compare, TextId::compare, true,
         "lists all differences between the chip and a file"},
        {"program", number::program, TextId::program, true, "programs a file and verifies it"},
        {"erase", number::erase, TextId::erase, false, "erases the chip"},
        {"config", number::configuration, TextId::progconfig, true,
         "writes the configuration bytes of a file"},
        {"secure", number::configuration, TextId::secure, false,
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

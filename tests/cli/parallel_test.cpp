// The parallel devices of the catalogue, from end to end.
#include <nlohmann/json.hpp>

#include "cli/bench.h"
#include "host/files/files.h"

namespace keld2::test {
namespace {

struct ParallelDevice {
    const char* name;
    std::uint32_t bytes;
};

class BytesBench : public Bench {
  protected:
    std::string bytesfile(const std::string& name, const std::vector<std::uint8_t>& bytes) const {
        return folder_.file(name, std::string(bytes.begin(), bytes.end())).string();
    }
};

class Parallel : public BytesBench, public ::testing::WithParamInterface<ParallelDevice> {
  protected:
    Parallel() { device_ = GetParam().name; }
};

INSTANTIATE_TEST_SUITE_P(Catalogue, Parallel,
                         ::testing::Values(ParallelDevice{"parallel-byte-64k", 0x10000},
                                           ParallelDevice{"parallel-byte-128k", 0x20000},
                                           ParallelDevice{"parallel-byte-192k", 0x30000},
                                           ParallelDevice{"parallel-byte-256k", 0x40000},
                                           ParallelDevice{"parallel-page-64k", 0x10000},
                                           ParallelDevice{"parallel-page-384k", 0x60000},
                                           ParallelDevice{"parallel-page-512k", 0x80000}),
                         [](const auto& tested) {
                             std::string name = tested.param.name;
                             std::replace(name.begin(), name.end(), '-', '_');
                             return name;
                         });

TEST_P(Parallel, KeepsItsContentUntilItIsErased) {
    std::vector<std::uint8_t> content(GetParam().bytes, 255);
    for (std::size_t at = 0; at < content.size(); at += 1021)
        content[at] = static_cast<std::uint8_t>(at / 251);
    content.back() = 0;
    mustwork({"program", bytesfile("a.bin", content)});
    mustwork({"read", file("out.bin").string()});
    EXPECT_TRUE(host::readbytes(file("out.bin")) == content);
    mustwork({"erase"});
}

class SmallParallel : public BytesBench {};

TEST_F(SmallParallel, GoesTheWholeWay) {
    for (const char* device : {"parallel-byte-64k", "parallel-page-64k"}) {
        SCOPED_TRACE(device);
        device_ = device;
        std::filesystem::remove(chip());
        std::vector<std::uint8_t> content = somebytes(0x10000);
        const std::string data = bytesfile("a.bin", content);
        mustwork({"program", data});
        EXPECT_EQ(keld2({"blank"}).status, 1);
        mustwork({"verify", data});
        const std::vector<std::size_t> differing{0, 255, 16384, 50000, 65535};
        for (const std::size_t at : differing) content[at] ^= 0x18;
        const std::string changed = bytesfile("b.bin", content);
        const auto json = nlohmann::json::parse(keld2({"compare", changed, "--json"}).out);
        EXPECT_EQ(json["differences"].size(), differing.size());
        EXPECT_EQ(keld2({"program", changed}).status, 1) << "0 does not become 1 again";
        mustwork({"erase"});
        mustwork({"auto", changed});
    }
}

TEST_F(SmallParallel, FailsWithTheRightStatus) {
    for (const char* device : {"parallel-byte-64k", "parallel-page-64k"}) {
        SCOPED_TRACE(device);
        device_ = device;
        std::filesystem::remove(chip());
        const std::string data = folder_.file("a.bin", "some text").string();
        faults_ = {"stuck=0x1234:6:0"};
        EXPECT_EQ(keld2({"erase"}).status, 1);
        faults_ = {"bulkfail=1"};
        mustwork({"blank"});  // the second try
        faults_ = {"bulkfail"};
        EXPECT_EQ(keld2({"blank"}).status, 3);
        EXPECT_EQ(keld2({"erase"}).status, 3);
        faults_ = {"nopower"};
        EXPECT_EQ(keld2({"program", data}).status, 1);
    }
}

}  // namespace
}  // namespace keld2::test

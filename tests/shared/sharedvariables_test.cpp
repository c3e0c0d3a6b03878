#include "shared/sharedvariables.h"

#include <gtest/gtest.h>

#include <set>

#include "platform/platformdecorator.h"
#include "shared/notes.h"
#include "testmachine.h"

namespace keld2 {
namespace {

// Memory that refuses some blocks, as a machine does where others hold them.
class RefusingMemory final : public NamedMemory {
  public:
    explicit RefusingMemory(NamedMemory& inner) : inner_(inner) {}
    MemoryHandle open(const std::string& name) override {
        return refused.contains(name) ? 0 : inner_.open(name);
    }
    MemoryHandle create(const std::string& name, std::int32_t size) override {
        ++creations;
        return refused.contains(name) ? 0 : inner_.create(name, size);
    }
    std::span<std::byte> mapview(MemoryHandle handle) override {
        ++views;
        return inner_.mapview(handle);
    }
    bool unmapview(std::span<std::byte> view) override {
        --views;
        return inner_.unmapview(view);
    }
    void close(MemoryHandle handle) override { inner_.close(handle); }

    std::set<std::string> refused;
    std::size_t creations = 0;
    int views = 0;

  private:
    NamedMemory& inner_;
};

// Counts the texts that live.
class CountedStrings final : public SharedStrings {
  public:
    explicit CountedStrings(SharedStrings& inner) : inner_(inner) {}
    StringHandle allocate(std::u16string_view text) override {
        const StringHandle handle = inner_.allocate(text);
        living += handle != 0 ? 1 : 0;
        return handle;
    }
    std::u16string text(StringHandle handle) const override { return inner_.text(handle); }
    void free(StringHandle handle) override {
        living -= handle != 0 ? 1 : 0;
        inner_.free(handle);
    }

    int living = 0;

  private:
    SharedStrings& inner_;
};

class Blocks : public testing::Test {
  protected:
    test::TestMachine machine_;
    RefusingMemory memory_{machine_.memory()};
    CountedStrings strings_{machine_.strings()};
    SharedVariables host_{memory_, strings_};
    SharedVariables plugin_{memory_, strings_};
    clsMemMapped block_{memory_};
    int failures_ = 0;

    void map(SharedVariables& s, std::int16_t num) {
        s.map(num, [this] { ++failures_; });
    }
    bool there(const std::string& name) {
        const MemoryHandle handle = memory_.open(name);
        if (handle != 0) memory_.close(handle);
        return handle != 0;
    }
};

TEST_F(Blocks, EveryRowHasItsVariableItsBlockAndItsCount) {
    map(plugin_, 12);
    EXPECT_EQ(failures_, 0);
    std::set<const void*> places;
    for (std::size_t i = 0; i < blocktable.size(); ++i) {
        const BlockRow& row = blocktable[i];
        const auto check = [&](auto* v) {
            using Array = SharedArray<std::remove_reference_t<decltype(*v->data())>>;
            EXPECT_EQ(row.name, v->name());
            EXPECT_EQ(v->Array::size(), row.count != 0 ? row.count : bufferextra) << row.name;
            places.insert(v->data());
        };
        std::visit(check, plugin_.variable(i));
        const bool numbered = i + 2 < blocktable.size();
        EXPECT_TRUE(there("quelta" + std::string(row.name) + (numbered ? "12" : ""))) << row.name;
    }
    EXPECT_EQ(places.size(), blocktable.size());
}

TEST_F(Blocks, TheHostsBlockWinsAndAViewKeepsToItsCountAndItsBlock) {
    ASSERT_TRUE(block_.OpenAndMapMemoryBlock("queltabvcc7", 4000));
    reinterpret_cast<std::int16_t*>(block_.BaseAddress())[3] = 330;
    clsMemMapped small(memory_);
    ASSERT_TRUE(small.OpenAndMapMemoryBlock("queltaibuf27", 100));
    map(plugin_, 7);
    EXPECT_EQ(memory_.creations, blocktable.size());
    EXPECT_EQ(plugin_.bvcc[3], 330);
    for (const int outside : {4, -1}) EXPECT_THROW(plugin_.bvcc[outside], RunFault);
    EXPECT_TRUE(plugin_.bvcc.holds(0, 3));
    EXPECT_FALSE(plugin_.bvcc.holds(0, 4));
    EXPECT_EQ(plugin_.ibuf2.size(), static_cast<std::int64_t>(small.ViewSize()));
    EXPECT_THROW(plugin_.ibuf2[65599], RunFault);
}

TEST_F(Blocks, TheBufferFollowsBuflength) {
    struct Row {
        std::int32_t length;
        std::int64_t size;
        int failures;
    };
    host_.maprows(0, nullptr);
    for (const Row& row :
         {Row{4112, 4112 + 2200, 0}, Row{100, 2300, 0}, Row{-2199, 1, 0}, Row{-3000, 1, 1}}) {
        failures_ = 0;
        host_.buflength[0] = row.length;
        map(plugin_, 0);
        EXPECT_EQ(plugin_.ibuffer.size(), row.size);
        EXPECT_EQ(plugin_.ibuffer66.size(), 15);
        EXPECT_EQ(failures_, row.failures) << row.length;
        EXPECT_EQ(there("queltaibuffer"), row.failures == 0);
        plugin_.releasebuffers();
        EXPECT_EQ(plugin_.ibuffer.size(), 1);
        EXPECT_FALSE(there("queltaibuffer"));
        EXPECT_EQ(plugin_.buflength[0], row.length) << "all others stay";
    }
}

TEST_F(Blocks, ABlockThatCannotBeMappedIsToldOnceAndTheOthersAre) {
    memory_.refused = {"queltabuflength3", "queltaMainRtstr3", "queltaibuffer66"};
    map(plugin_, 3);
    EXPECT_EQ(failures_, 3);
    EXPECT_EQ(plugin_.buflength.size(), 1);
    EXPECT_EQ(plugin_.ibuffer.size(), bufferextra);  // buflength[0] is its own element: 0
    EXPECT_EQ(plugin_.ibuffer66.size(), 1);
    EXPECT_EQ(plugin_.selmode.size(), 3);
    plugin_.MainRtstr[0] = u"log";
    EXPECT_EQ(plugin_.MainRtstr[0].text(), u"log");
    EXPECT_THROW(plugin_.MainRtstr[1], RunFault);
}

TEST_F(Blocks, MappingAgainDropsWhatWasMapped) {
    for (const int num : {0, 1, 1}) {
        map(plugin_, static_cast<std::int16_t>(num));
        EXPECT_EQ(plugin_.tlength[0], 0);
        EXPECT_EQ(there("queltatlength0"), num == 0);
        EXPECT_EQ(there("queltaalgobuf0"), num == 0);
        plugin_.tlength[0] = 1;  // the view works
    }
    EXPECT_EQ(failures_, 0);
}

TEST_F(Blocks, TextsGoFromHostToPluginAndBack) {
    map(host_, 0);
    map(plugin_, 0);
    host_.prgnote[2] = u" OK";
    plugin_.MainRtstr[0] = u"a";
    plugin_.MainRtstr[0] += plugin_.prgnote[2].text();
    EXPECT_EQ(host_.MainRtstr[0].text(), u"a OK");
    EXPECT_EQ(strings_.living, 2);  // the text before was freed
    EXPECT_EQ(plugin_.MainmnuPrg.textorempty(20), u"");
}

class EarlyMorning final : public PlatformDecorator {
  public:
    using PlatformDecorator::PlatformDecorator;
    double secondssincemidnight() override { return 1.5; }
};

TEST_F(Blocks, ARunAcrossMidnightHasItsSeconds) {
    map(plugin_, 0);
    EarlyMorning machine(machine_);
    for (const double start : {0.25, 86399.0}) appendelapsed(plugin_, machine, start);
    EXPECT_EQ(plugin_.MainRtstr[0].text(), u">> 1.25Sec\n>> 2.50Sec\n");
}

TEST_F(Blocks, FindnumIsTheFirstInstanceWithoutItsFirstBlock) {
    map(host_, 0);
    ASSERT_TRUE(block_.OpenAndMapMemoryBlock("queltaibuf11", 40));
    EXPECT_EQ(block_.findnum(), 2);
}

TEST_F(Blocks, AMappingObjectCanBeUsedAgain) {
    EXPECT_FALSE(block_.UnMapFile());
    ASSERT_TRUE(block_.OpenAndMapMemoryBlock("one", 40));
    ASSERT_TRUE(block_.OpenAndMapMemoryBlock("two", 80));
    EXPECT_EQ(block_.MappedFile(), "two");
    EXPECT_EQ(block_.MappedSize(), 80);
    EXPECT_FALSE(there("one"));
    EXPECT_TRUE(block_.UnMapFile());
    EXPECT_EQ(block_.BaseAddress(), nullptr);
    EXPECT_EQ(memory_.views, 0);
}

}  // namespace
}  // namespace keld2

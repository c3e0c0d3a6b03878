#include "shared/sharedvariables.h"

#include <gtest/gtest.h>

#include <set>

#include "testmachine.h"

namespace keld2 {
namespace {

class Blocks : public testing::Test {
  protected:
    test::TestMachine machine_;
    NamedMemory& memory_ = machine_.memory();
    SharedStrings& strings_ = machine_.strings();
    SharedVariables plugin_{memory_, strings_};
    int failures_ = 0;

    void map(SharedVariables& s, std::int16_t num) {
        s.map(num, [this] { ++failures_; });
    }
};

std::int64_t sizeofvariable(AnyVariable variable) {
    return std::visit(
        [](auto* v) {
            return v->SharedArray<std::remove_reference_t<decltype(*v->data())>>::size();
        },
        variable);
}

TEST_F(Blocks, EveryRowHasItsVariableItsBlockAndItsCount) {
    map(plugin_, 12);
    EXPECT_EQ(failures_, 0);
    std::set<const void*> places;
    for (std::size_t i = 0; i < blocktable.size(); ++i) {
        const BlockRow& row = blocktable[i];
        const AnyVariable variable = plugin_.variable(i);
        EXPECT_EQ(row.name, std::visit([](auto* v) { return v->name(); }, variable));
        EXPECT_EQ(sizeofvariable(variable), row.count != 0 ? row.count : bufferextra) << row.name;
        places.insert(
            std::visit([](auto* v) { return static_cast<const void*>(v->data()); }, variable));
        const bool numbered = i + 2 < blocktable.size();
        const MemoryHandle handle =
            memory_.open("quelta" + std::string(row.name) + (numbered ? "12" : ""));
        EXPECT_NE(handle, 0) << row.name;
        memory_.close(handle);
    }
    EXPECT_EQ(places.size(), blocktable.size());
}

TEST_F(Blocks, TheHostsBlockWinsAndTheViewKeepsItsCount) {
    clsMemMapped host(memory_);
    ASSERT_TRUE(host.OpenAndMapMemoryBlock("queltabvcc7", 4000));
    reinterpret_cast<std::int16_t*>(host.BaseAddress())[3] = 330;
    map(plugin_, 7);
    EXPECT_EQ(plugin_.bvcc[3], 330);
    EXPECT_THROW(plugin_.bvcc[4], RunFault);
    EXPECT_THROW(plugin_.bvcc[-1], RunFault);
}

TEST_F(Blocks, TheBufferFollowsBuflength) {
    SharedVariables host(memory_, strings_);
    host.maprows(0, nullptr);
    host.buflength[0] = 4112;
    map(plugin_, 0);
    EXPECT_EQ(plugin_.ibuffer.size(), 4112 + 2200);
    plugin_.releasebuffers();
    EXPECT_EQ(plugin_.ibuffer.size(), 1);
    EXPECT_EQ(plugin_.buflength[0], 4112);  // all others stay
    host.buflength[0] = 100;
    map(plugin_, 0);
    EXPECT_EQ(plugin_.ibuffer.size(), 2300);
}

TEST_F(Blocks, AnImpossibleBufferIsReportedOnceAndLeavesOneElement) {
    SharedVariables host(memory_, strings_);
    host.maprows(0, nullptr);
    host.buflength[0] = -3000;
    map(plugin_, 0);
    EXPECT_EQ(failures_, 1);
    EXPECT_EQ(plugin_.ibuffer.size(), 1);
    EXPECT_EQ(plugin_.ibuffer66.size(), 15);
}

// Memory that refuses some blocks, as a machine does where others hold them.
class RefusingMemory final : public NamedMemory {
  public:
    RefusingMemory(NamedMemory& inner, std::set<std::string> refused)
        : inner_(inner), refused_(std::move(refused)) {}
    MemoryHandle open(const std::string& name) override {
        return refused_.contains(name) ? 0 : inner_.open(name);
    }
    MemoryHandle create(const std::string& name, std::int32_t size) override {
        return refused_.contains(name) ? 0 : inner_.create(name, size);
    }
    std::span<std::byte> mapview(MemoryHandle handle) override { return inner_.mapview(handle); }
    bool unmapview(std::span<std::byte> view) override { return inner_.unmapview(view); }
    void close(MemoryHandle handle) override { inner_.close(handle); }

  private:
    NamedMemory& inner_;
    std::set<std::string> refused_;
};

TEST_F(Blocks, ABlockThatCannotBeMappedIsToldOnceAndTheOthersAre) {
    RefusingMemory memory(memory_, {"queltabuflength3", "queltaMainRtstr3", "queltaibuffer66"});
    SharedVariables s(memory, strings_);
    map(s, 3);
    EXPECT_EQ(failures_, 3);
    EXPECT_EQ(s.buflength.size(), 1);
    EXPECT_EQ(s.ibuffer.size(), bufferextra);  // buflength[0] is its own element: 0
    EXPECT_EQ(s.ibuffer66.size(), 1);
    EXPECT_EQ(s.selmode.size(), 3);
    s.MainRtstr[0] = u"log";
    EXPECT_EQ(s.MainRtstr[0].text(), u"log");
    EXPECT_THROW(s.MainRtstr[1], RunFault);
}

TEST_F(Blocks, AViewNeverLeavesABlockThatIsTooSmall) {
    clsMemMapped host(memory_);
    ASSERT_TRUE(host.OpenAndMapMemoryBlock("queltaibuf20", 100));
    map(plugin_, 0);
    EXPECT_EQ(plugin_.ibuf2.size(), static_cast<std::int64_t>(host.ViewSize()));
    EXPECT_THROW(plugin_.ibuf2[65599], RunFault);
}

TEST_F(Blocks, MappingAgainDropsWhatWasMapped) {
    map(plugin_, 0);
    plugin_.tlength[0] = 4112;
    map(plugin_, 1);
    EXPECT_EQ(plugin_.tlength[0], 0);
    EXPECT_EQ(memory_.open("queltatlength0"), 0);
    EXPECT_EQ(memory_.open("queltaalgobuf0"), 0);
    map(plugin_, 1);
    plugin_.tlength[0] = 1;  // the view works
    EXPECT_EQ(failures_, 0);
}

// Counts the texts that live.
class CountedStrings final : public SharedStrings {
  public:
    explicit CountedStrings(SharedStrings& inner) : inner_(inner) {}
    StringHandle allocate(std::u16string_view text) override {
        const StringHandle handle = inner_.allocate(text);
        if (handle != 0) ++living;
        return handle;
    }
    std::u16string text(StringHandle handle) const override { return inner_.text(handle); }
    void free(StringHandle handle) override {
        if (handle != 0) --living;
        inner_.free(handle);
    }

    int living = 0;

  private:
    SharedStrings& inner_;
};

TEST_F(Blocks, TextsGoFromHostToPluginAndBack) {
    CountedStrings strings(strings_);
    SharedVariables host(memory_, strings);
    SharedVariables plugin(memory_, strings);
    map(host, 0);
    map(plugin, 0);
    host.prgnote[2] = u" OK";
    plugin.MainRtstr[0] = u"a";
    plugin.MainRtstr[0] += plugin.prgnote[2].text();
    EXPECT_EQ(host.MainRtstr[0].text(), u"a OK");
    EXPECT_EQ(strings.living, 2);  // the text before was freed
    EXPECT_EQ(plugin.MainmnuPrg.textorempty(20), u"");
}

TEST_F(Blocks, FindnumIsTheFirstInstanceWithoutBlocks) {
    SharedVariables other(memory_, strings_);
    map(plugin_, 0);
    map(other, 1);
    clsMemMapped finder(memory_);
    EXPECT_EQ(finder.findnum(), 2);
}

TEST_F(Blocks, AViewGivesBackWhatItTookOver) {
    SharedArray<std::int32_t> array("array");
    std::int32_t elsewhere[3] = {7, 8, 9};
    array[0] = 5;
    {
        clsSafeArray<std::int32_t> view;
        view.AttachToArray(array);
        view.PointerToData() = elsewhere;
        view.CountOfElements(1) = 3;
        EXPECT_EQ(array[2], 9);
    }
    EXPECT_EQ(array.size(), 1);
    EXPECT_EQ(array[0], 5);
}

TEST_F(Blocks, AMappingObjectCanBeUsedAgain) {
    clsMemMapped block(memory_);
    EXPECT_FALSE(block.UnMapFile());
    ASSERT_TRUE(block.OpenAndMapMemoryBlock("one", 40));
    ASSERT_TRUE(block.OpenAndMapMemoryBlock("two", 80));
    EXPECT_EQ(block.MappedFile(), "two");
    EXPECT_EQ(block.MappedSize(), 80);
    EXPECT_EQ(memory_.open("one"), 0);
    EXPECT_TRUE(block.UnMapFile());
    EXPECT_EQ(block.BaseAddress(), nullptr);
}

}  // namespace
}  // namespace keld2

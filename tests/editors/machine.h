// A machine for the editors' tests: named memory in the process, boxes that nobody shows, and a
// user that is a function.
#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "platform/form.h"
#include "plugin/clskeld2.h"

namespace keld2::test {

class Memory final : public NamedMemory {
  public:
    MemoryHandle open(const std::string& name) override {
        const auto found = std::ranges::find(blocks_, name, &Block::name);
        return found == blocks_.end() ? 0 : found - blocks_.begin() + 1;
    }
    MemoryHandle create(const std::string& name, std::int32_t size) override {
        blocks_.push_back({name, std::vector<std::byte>(static_cast<std::size_t>(size))});
        return static_cast<MemoryHandle>(blocks_.size());
    }
    std::span<std::byte> mapview(MemoryHandle handle) override {
        return blocks_[static_cast<std::size_t>(handle) - 1].bytes;
    }
    bool unmapview(std::span<std::byte>) override { return true; }
    void close(MemoryHandle) override {}

  private:
    struct Block {
        std::string name;
        std::vector<std::byte> bytes;
    };
    std::vector<Block> blocks_;
};

class Strings final : public SharedStrings {
  public:
    StringHandle allocate(std::u16string_view text) override {
        texts_[++last_] = text;
        return last_;
    }
    std::u16string text(StringHandle handle) const override {
        return handle == 0 ? std::u16string() : texts_.at(handle);
    }
    void free(StringHandle handle) override { texts_.erase(handle); }

  private:
    std::map<StringHandle, std::u16string> texts_;
    StringHandle last_ = 0;
};

class Machine final : public Platform {
  public:
    std::function<void(Form&)> user;  // what is done with a window that opens

    NamedMemory& memory() override { return memory_; }
    SharedStrings& strings() override { return strings_; }
    void service() override {}
    void wake() override {}
    TimerId settimer(std::int32_t, std::function<void()>) override { return 0; }
    void killtimer(TimerId) override {}
    BoxAnswer messagebox(const Box&) override { return BoxAnswer::ok; }
    void showform(Form& form) override { user(form); }
    void window(std::string_view, const WindowChange&) override {}
    FileContent readfile(std::span<const std::u16string>) override { return {}; }
    double secondssincemidnight() override { return 0; }

  private:
    Memory memory_;
    Strings strings_;
};

// A plug-in whose blocks are mapped, for a chip of a family whose image has a length.
struct Editing {
    static constexpr std::int32_t buflength = 300000;

    Editing(std::uint8_t mode, std::int32_t length) {
        s.maprows(0, [] {});
        s.buflength[0] = buflength;
        plugin.bufcomkeld2(0);
        s.prgmode[0] = mode;
        s.tlength[0] = length;
    }

    // Opens the editor and lets user work on it; afterwards the window is gone.
    void configuration(std::function<void(Form&)> user) {
        machine.user = std::move(user);
        plugin.editfigkeld2();
    }
    void code(std::function<void(Form&)> user) {
        machine.user = std::move(user);
        plugin.usercode();
    }
    std::uint8_t& cell(std::int64_t offset) { return s.ibuffer[s.tlength[0] + offset]; }

    Machine machine;
    Module module{machine, {}};
    ClsKELD2 plugin{module};
    SharedVariables& s = module.variables();
};

inline void type(Form& form, std::string_view box, std::u16string_view characters) {
    for (const char16_t c : characters) form.keypress(box, c);
}
inline void ok(Form& form) { form.click("OKButton"); }
inline void cancel(Form& form) { form.click("CancelButton"); }
inline const std::u16string& textof(const Form& form, std::string_view name) {
    return form.control(name).text;
}

}  // namespace keld2::test

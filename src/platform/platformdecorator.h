// PlatformDecorator: forwards everything to another platform; derive to watch or change a part.
#pragma once

#include <utility>

#include "platform/platform.h"

namespace keld2 {

class PlatformDecorator : public Platform {
  public:
    explicit PlatformDecorator(Platform& inner) : inner_(inner) {}

    NamedMemory& memory() override { return inner_.memory(); }
    SharedStrings& strings() override { return inner_.strings(); }
    void service() override { inner_.service(); }
    void wake() override { inner_.wake(); }
    TimerId settimer(std::int32_t milliseconds, std::function<void()> handler) override {
        return inner_.settimer(milliseconds, std::move(handler));
    }
    void killtimer(TimerId id) override { inner_.killtimer(id); }
    BoxAnswer messagebox(const Box& box) override { return inner_.messagebox(box); }
    void showform(Form& form) override { inner_.showform(form); }
    void window(std::string_view name, const WindowChange& change) override {
        inner_.window(name, change);
    }
    FileContent readfile(std::span<const std::u16string> parts) override {
        return inner_.readfile(parts);
    }
    double secondssincemidnight() override { return inner_.secondssincemidnight(); }

  protected:
    Platform& inner() { return inner_; }

  private:
    Platform& inner_;
};

}  // namespace keld2

#include "plugin/module.h"

#include <utility>

#include "arm/context.h"

namespace keld2 {

Module::Module(Platform& platform, External external)
    : platform_(platform),
      external_(std::move(external)),
      variables_(platform.memory(), platform.strings()) {}

Module::~Module() = default;

DevCore& Module::devcore() {
    if (!devcore_ && external_.devcore) devcore_ = external_.devcore(variables_);
    if (!devcore_) throw ComponentMissing("DevCore");
    return *devcore_;
}

UsbTransport& Module::transport() {
    if (!transport_ && external_.transport) transport_ = external_.transport(variables_);
    if (!transport_) throw ComponentMissing("tq8io");
    return *transport_;
}

std::span<std::uint8_t> Module::imagereadback() {
    if (imagereadback_.empty()) imagereadback_.resize(imagereadbacksize);
    return imagereadback_;
}

TextHelper& Module::helper() {
    if (!helper_)
        helper_ = external_.helper ? external_.helper() : std::make_unique<PlainTextHelper>();
    if (!helper_) throw ComponentMissing("tq5io");
    return *helper_;
}

}  // namespace keld2

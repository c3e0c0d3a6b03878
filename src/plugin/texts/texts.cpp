#include "plugin/texts/texts.h"

#include <array>

namespace keld2 {

namespace {

constexpr std::array<std::pair<TextId, std::u16string_view>, 33> english{{
    {TextId::editefield, u"Edit E_Field"},
    {TextId::warning, u"Warning! "},
    {TextId::ok, u"OK"},
    {TextId::cancel, u"Cancel"},
    {TextId::note, u"Note!"},
    {TextId::devcode, u"Dev. Code:"},
    {TextId::deviceaddress, u">>Device Address:"},
    {TextId::hdevicedata, u"H  Device Data:"},
    {TextId::hbufferaddress, u"H  Buffer Address:"},
    {TextId::hbufferdata, u"H  Buffer Data:"},
    {TextId::stop, u"Stop"},
    {TextId::information, u"Information"},
    {TextId::devicedata, u"   Device Data:"},
    {TextId::bufferdata, u"   Buffer Data:"},
    {TextId::disable, u"Disable"},
    {TextId::enable, u"Enable"},
    {TextId::devicecodeerror, u"Device Code Error!"},
    {TextId::devicebuffer, u" Device         Buffer"},
    {TextId::programmemory, u"Program Memory:"},
    {TextId::idlocations, u"  ID Locations:"},
    {TextId::configword, u"  Config. Word:"},
    {TextId::editconfiguration, u"Edit Configuration"},
    {TextId::needacadaptor, u" Need AC adaptor!"},
    {TextId::autoprogram, u"Auto Program"},
    {TextId::read, u"Read"},
    {TextId::verify, u"Verify"},
    {TextId::blankcheck, u"Blank Check"},
    {TextId::compare, u"Compare"},
    {TextId::program, u"Program"},
    {TextId::secure, u"Secure"},
    {TextId::memoryprotect, u"Memory Protect"},
    {TextId::erase, u"Erase"},
    {TextId::progconfig, u"Prog Config"},
}};

}  // namespace

std::u16string_view text(TextId id, std::int32_t) {
    for (const auto& [key, value] : english)
        if (key == id) return value;
    return {};
}

std::u16string_view text(std::int32_t id, std::int32_t language) {
    return text(static_cast<TextId>(id), language);
}

}  // namespace keld2

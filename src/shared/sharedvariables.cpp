#include "shared/sharedvariables.h"

#include <limits>

namespace keld2 {

const std::array<BlockRow, 62> blocktable{{
    {"ibuf1", 400, ElementType::byte, 20, Writer::closed},
    {"ubuf1", 400, ElementType::byte, 20, Writer::plugin},
    {"ubuf2", 400, ElementType::byte, 300, Writer::none},
    {"ibuf2", 65600, ElementType::byte, 65600, Writer::closed},
    {"usbpip0readresult", 400, ElementType::flag, 2, Writer::none},
    {"usbpip2readresult", 400, ElementType::byte, 2, Writer::both},
    {"arrybuf", 400, ElementType::byte, 210, Writer::none},
    {"prgnote", 400, ElementType::string, 30, Writer::host},
    {"prgresult", 400, ElementType::byte, 3, Writer::both},
    {"wltbigendbuf", 400, ElementType::f64, 4, Writer::host},
    {"bvccpin", 40, ElementType::byte, 4, Writer::host},
    {"bgndpin", 40, ElementType::byte, 4, Writer::host},
    {"bvpppin", 40, ElementType::byte, 4, Writer::host},
    {"bvcc", 40, ElementType::i16, 4, Writer::host},
    {"bvcch", 40, ElementType::i16, 4, Writer::host},
    {"bvpp", 40, ElementType::i16, 4, Writer::host},
    {"buflength", 40, ElementType::i32, 4, Writer::host},
    {"Language", 40, ElementType::i32, 4, Writer::host},
    {"pagelength", 40, ElementType::i16, 4, Writer::host},
    {"modeltype", 40, ElementType::i16, 4, Writer::host},
    {"wfig", 40, ElementType::byte, 6, Writer::none},
    {"chipidtestmode", 40, ElementType::flag, 4, Writer::host},
    {"pwte", 40, ElementType::i32, 4, Writer::host},
    {"figmode", 40, ElementType::byte, 4, Writer::host},
    {"chippin", 40, ElementType::i16, 4, Writer::none},
    {"wretry", 40, ElementType::i16, 4, Writer::host},
    {"prgmode", 40, ElementType::byte, 4, Writer::both},
    {"wordmode", 40, ElementType::byte, 4, Writer::host},
    {"woption", 40, ElementType::byte, 4, Writer::host},
    {"wautonum", 40, ElementType::byte, 4, Writer::host},
    {"tlength", 40, ElementType::i32, 4, Writer::host},
    {"compid", 40, ElementType::i16, 4, Writer::host},
    {"typeid", 40, ElementType::i16, 4, Writer::host},
    {"wsign", 40, ElementType::byte, 4, Writer::host},
    {"buftype", 40, ElementType::byte, 4, Writer::host},
    {"autoprg", 40, ElementType::byte, 11, Writer::host},
    {"rambknum", 40, ElementType::byte, 4, Writer::host},
    {"MainmnuPrg", 400, ElementType::string, 20, Writer::host},
    {"MainRtstr", 40, ElementType::string, 3, Writer::both},
    {"ubuflg", 40, ElementType::i16, 3, Writer::plugin},
    {"ramlg", 40, ElementType::i32, 3, Writer::host},
    {"wlverifyvcc", 40, ElementType::i32, 3, Writer::host},
    {"algo", 40, ElementType::string, 4, Writer::none},
    {"figvol", 40, ElementType::byte, 4, Writer::host},
    {"wwarnno", 40, ElementType::byte, 4, Writer::none},
    {"spdter", 40, ElementType::string, 4, Writer::none},
    {"menu", 40, ElementType::byte, 14, Writer::none},
    {"order", 400, ElementType::byte, 10, Writer::none},
    {"pintestmap", 40, ElementType::string, 3, Writer::none},
    {"wordmode0", 40, ElementType::byte, 3, Writer::none},
    {"ppin", 40, ElementType::string, 13, Writer::none},
    {"serial", 40, ElementType::i32, 3, Writer::none},
    {"typeformat", 40, ElementType::byte, 3, Writer::none},
    {"ICnum", 40, ElementType::byte, 80, Writer::none},
    {"wcompany", 40, ElementType::string, 4, Writer::none},
    {"wtype", 40, ElementType::string, 3, Writer::none},
    {"usbable", 40, ElementType::flag, 10, Writer::host},
    {"algorithm", 40, ElementType::string, 4, Writer::host},
    {"selmode", 40, ElementType::byte, 3, Writer::host},
    {"algobuf", 131072, ElementType::byte, 131072, Writer::both},
    {"ibuffer", 0, ElementType::byte, 0, Writer::both},
    {"ibuffer66", 40, ElementType::byte, 15, Writer::none},
}};

namespace {

constexpr std::size_t bufferrows = 2;  // the last rows: mapped by mapbuffers, without a number

template <typename Variable>
bool mapblock(Variable& variable, NamedMemory& memory, const std::string& block,
              const BlockRow& row, std::int32_t size) {
    const auto count = row.count != 0 ? row.count : static_cast<std::uint32_t>(size);
    return variable.map(memory, block, size, count);
}

}  // namespace

SharedText& SharedText::operator=(std::u16string_view text) {
    const StringHandle fresh = strings_.allocate(text);
    strings_.free(handle_);
    handle_ = fresh;
    return *this;
}

SharedVariables::SharedVariables(NamedMemory& memory, SharedStrings& strings)
    : prgnote("prgnote", strings),
      MainmnuPrg("MainmnuPrg", strings),
      MainRtstr("MainRtstr", strings),
      algo("algo", strings),
      spdter("spdter", strings),
      pintestmap("pintestmap", strings),
      ppin("ppin", strings),
      wcompany("wcompany", strings),
      wtype("wtype", strings),
      algorithm("algorithm", strings),
      memory_(memory) {}

void SharedVariables::maprows(std::int16_t num, const Failure& failed) {
    for (std::size_t i = 0; i + bufferrows < blocktable.size(); ++i) {
        const BlockRow& row = blocktable[i];
        const std::string block = "quelta" + std::string(row.name) + std::to_string(num);
        const auto map = [&](auto* v) { return mapblock(*v, memory_, block, row, row.size); };
        if (!std::visit(map, variable(i)) && failed) failed();
    }
}

void SharedVariables::mapbuffers(const Failure& failed) {
    const std::int64_t wanted = std::int64_t{buflength[0]} + bufferextra;
    const bool possible = wanted > 0 && wanted <= std::numeric_limits<std::int32_t>::max();
    for (std::size_t i = blocktable.size() - bufferrows; i < blocktable.size(); ++i) {
        const BlockRow& row = blocktable[i];
        const std::int32_t size = row.size != 0 ? row.size
                                  : possible    ? static_cast<std::int32_t>(wanted)
                                                : 0;
        const std::string block = "quelta" + std::string(row.name);
        const auto map = [&](auto* v) { return mapblock(*v, memory_, block, row, size); };
        if (!std::visit(map, variable(i)) && failed) failed();
    }
}

void SharedVariables::map(std::int16_t num, const Failure& failed) {
    maprows(num, failed);
    mapbuffers(failed);
}

void SharedVariables::releasebuffers() {
    ibuffer.unmap();
    ibuffer66.unmap();
}

AnyVariable SharedVariables::variable(std::string_view name) {
    for (std::size_t i = 0; i < blocktable.size(); ++i)
        if (blocktable[i].name == name) return variable(i);
    throw RunFault("no shared variable of this name", std::string(name));
}

// One line a block. NOLINTNEXTLINE(readability-function-size)
AnyVariable SharedVariables::variable(std::size_t row) {
    const std::array<AnyVariable, blocktable.size()> members{&ibuf1,
                                                             &ubuf1,
                                                             &ubuf2,
                                                             &ibuf2,
                                                             &usbpip0readresult,
                                                             &usbpip2readresult,
                                                             &arrybuf,
                                                             &prgnote,
                                                             &prgresult,
                                                             &wltbigendbuf,
                                                             &bvccpin,
                                                             &bgndpin,
                                                             &bvpppin,
                                                             &bvcc,
                                                             &bvcch,
                                                             &bvpp,
                                                             &buflength,
                                                             &Language,
                                                             &pagelength,
                                                             &modeltype,
                                                             &wfig,
                                                             &chipidtestmode,
                                                             &pwte,
                                                             &figmode,
                                                             &chippin,
                                                             &wretry,
                                                             &prgmode,
                                                             &wordmode,
                                                             &woption,
                                                             &wautonum,
                                                             &tlength,
                                                             &compid,
                                                             &typeid_,
                                                             &wsign,
                                                             &buftype,
                                                             &autoprg,
                                                             &rambknum,
                                                             &MainmnuPrg,
                                                             &MainRtstr,
                                                             &ubuflg,
                                                             &ramlg,
                                                             &wlverifyvcc,
                                                             &algo,
                                                             &figvol,
                                                             &wwarnno,
                                                             &spdter,
                                                             &menu,
                                                             &order,
                                                             &pintestmap,
                                                             &wordmode0,
                                                             &ppin,
                                                             &serial,
                                                             &typeformat,
                                                             &ICnum,
                                                             &wcompany,
                                                             &wtype,
                                                             &usbable,
                                                             &algorithm,
                                                             &selmode,
                                                             &algobuf,
                                                             &ibuffer,
                                                             &ibuffer66};
    return members.at(row);
}

}  // namespace keld2

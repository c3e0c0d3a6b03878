#include "host/job/dump.h"

#include <nlohmann/json.hpp>
#include <span>

#include "host/files/hexbytes.h"
#include "platform/numbers.h"

namespace keld2::host {

namespace {

using Json = nlohmann::ordered_json;

template <typename T>
Json elements(const SharedArray<T>& variable) {
    Json list = Json::array();
    for (std::int64_t i = 0; i < variable.size(); ++i) list.push_back(variable[i]);
    return list;
}

Json texts(SharedTexts& variable) {
    Json list = Json::array();
    for (std::int64_t i = 0; i < variable.size(); ++i) list.push_back(utf8(variable[i].text()));
    return list;
}

std::string hex(const SharedArray<std::uint8_t>& variable) {
    return hexfrombytes({variable.data(), static_cast<std::size_t>(variable.size())});
}

}  // namespace

std::string dumptext(SharedVariables& s) {
    const Json dump{{"prgresult", elements(s.prgresult)},
                    {"prgmode", elements(s.prgmode)},
                    {"MainRtstr", texts(s.MainRtstr)},
                    {"ubuflg", elements(s.ubuflg)},
                    {"wltbigendbuf", elements(s.wltbigendbuf)},
                    {"usbpip2readresult", elements(s.usbpip2readresult)},
                    {"ubuf1", hex(s.ubuf1)},
                    {"ibuf1", hex(s.ibuf1)},
                    {"ibuffer", hex(s.ibuffer)}};
    return dump.dump(1) + "\n";
}

}  // namespace keld2::host

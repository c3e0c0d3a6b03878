#include "host/trace/tracingtransport.h"

#include <functional>

#include "host/files/hexbytes.h"

namespace keld2::host {

namespace {

// Offset of place within a block, -1 when it lies elsewhere.
std::ptrdiff_t offsetin(const SharedVariable<std::uint8_t>& block, const std::uint8_t* place) {
    const std::uint8_t* const begin = block.data();
    const bool within = !std::less<>{}(place, begin) && std::less<>{}(place, begin + block.size());
    return within ? place - begin : -1;
}

}  // namespace

std::string placename(const SharedVariables& s, const std::uint8_t* place) {
    if (place == s.ibuf2.data()) return "ibuf2";
    if (const auto offset = offsetin(s.ibuffer, place); offset >= 0)
        return "ibuffer+" + std::to_string(offset);
    if (const auto offset = offsetin(s.algobuf, place); offset >= 0)
        return "algobuf+" + std::to_string(offset);
    return "local";
}

int TracingTransport::usbcomwrite(std::span<const std::uint8_t> frame) {
    const std::string bytes = hexfrombytes(frame);
    const int answer = inner_->usbcomwrite(frame);
    trace_.line("usbcomwrite", frame.size(), bytes, "->", answer);
    return answer;
}

void TracingTransport::usbbulkread(std::span<std::uint8_t> target, std::uint8_t* result) {
    trace_.line("usbbulkread", placename(s_, target.data()), target.size());
    inner_->usbbulkread(target, result);
}

int TracingTransport::usbbulkwrite(std::span<const std::uint8_t> source) {
    const int answer = inner_->usbbulkwrite(source);
    trace_.line("usbbulkwrite", placename(s_, source.data()), source.size(), "->", answer);
    return answer;
}

}  // namespace keld2::host

#include "host/wave/vcdwriter.h"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace keld2::host {

namespace {

// Signals are named by characters from '!' to '~'.
std::string codeof(std::size_t number) {
    constexpr std::size_t letters = 94;
    std::string code;
    do {
        code += static_cast<char>('!' + number % letters);
        number /= letters;
    } while (number > 0);
    return code;
}

std::string binary(std::uint64_t value, int width) {
    std::string bits;
    for (int i = width - 1; i >= 0; --i) bits += (value >> i & 1) != 0 ? '1' : '0';
    return bits;
}

// Blanks and characters that end a record are written as escapes.
std::string escaped(const std::string& text) {
    std::string out;
    for (const char c : text) {
        if (c > ' ' && c != '\\') {
            out += c;
            continue;
        }
        char code[8];
        std::snprintf(code, sizeof code, "\\x%02x", static_cast<unsigned char>(c));
        out += static_cast<signed char>(c) < 0 ? std::string(1, c) : std::string(code);
    }
    return out;
}

}  // namespace

VcdWriter::Id VcdWriter::add(const std::string& scope, const std::string& name, const char* kind,
                             int width) {
    signals_.push_back({scope, name, codeof(signals_.size()), {}, kind, width});
    return signals_.size() - 1;
}

VcdWriter::Id VcdWriter::addwire(const std::string& scope, const std::string& name, int width) {
    return add(scope, name, "wire", width);
}

VcdWriter::Id VcdWriter::addreal(const std::string& scope, const std::string& name) {
    return add(scope, name, "real", 64);
}

VcdWriter::Id VcdWriter::addtext(const std::string& scope, const std::string& name) {
    return add(scope, name, "string", 1);
}

void VcdWriter::header() {
    file_ << "$version keld2 $end\n$timescale 1 ns $end\n";
    std::string scope;
    for (const Signal& one : signals_) {
        if (one.scope != scope) {
            if (!scope.empty()) file_ << "$upscope $end\n";
            file_ << "$scope module " << one.scope << " $end\n";
            scope = one.scope;
        }
        file_ << "$var " << one.kind << " " << std::to_string(one.width) << " " << one.code << " "
              << one.name;
        if (one.width > 1 && one.kind == std::string("wire"))
            file_ << " [" << std::to_string(one.width - 1) << ":0]";
        file_ << " $end\n";
    }
    if (!scope.empty()) file_ << "$upscope $end\n";
    file_ << "$enddefinitions $end\n#0\n";
}

void VcdWriter::moveto(std::uint64_t time) {
    if (!std::exchange(begun_, true)) header();
    if (time <= time_) return;
    time_ = time;
    file_ << "#" << std::to_string(time) << "\n";
}

void VcdWriter::change(std::uint64_t time, Id signal, std::string value) {
    Signal& one = signals_.at(signal);
    if (one.last == value) return;
    moveto(time);
    file_ << value << one.code << "\n";
    one.last = std::move(value);
}

void VcdWriter::wire(std::uint64_t time, Id signal, std::uint64_t value) {
    const int width = signals_.at(signal).width;
    change(time, signal, width == 1 ? binary(value & 1, 1) : "b" + binary(value, width) + ' ');
}

void VcdWriter::unknown(std::uint64_t time, Id signal) {
    change(time, signal, signals_.at(signal).width == 1 ? "x" : "bx ");
}

void VcdWriter::real(std::uint64_t time, Id signal, double value) {
    char text[40];
    std::snprintf(text, sizeof text, "r%.16g ", value);
    change(time, signal, text);
}

void VcdWriter::text(std::uint64_t time, Id signal, const std::string& value) {
    change(time, signal, "s" + escaped(value) + ' ');
}

void VcdWriter::finish(std::uint64_t time) {
    moveto(time);
    file_.flush();
}

}  // namespace keld2::host

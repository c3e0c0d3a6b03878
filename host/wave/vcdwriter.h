// VcdWriter: a value change dump, as the usual waveform viewers read it. Times are in nanoseconds.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "host/files/streamedfile.h"

namespace keld2::host {

class VcdWriter {
  public:
    using Id = std::size_t;

    // Throws HostError (66) when the file cannot be written.
    explicit VcdWriter(const std::filesystem::path& path) { file_.open(path); }

    // Signals are added before the first change. width: bits.
    Id addwire(const std::string& scope, const std::string& name, int width = 1);
    Id addreal(const std::string& scope, const std::string& name);
    Id addtext(const std::string& scope, const std::string& name);

    // A change at that time, which is not before that of the last one; equal values are left out.
    void wire(std::uint64_t time, Id signal, std::uint64_t value);
    void unknown(std::uint64_t time, Id signal);
    void real(std::uint64_t time, Id signal, double value);
    void text(std::uint64_t time, Id signal, const std::string& value);

    // Ends the file at that time; throws HostError (66) when it could not be written.
    void finish(std::uint64_t time);

  private:
    struct Signal {
        std::string scope, name, code, last;
        const char* kind;
        int width;
    };
    Id add(const std::string& scope, const std::string& name, const char* kind, int width);
    void change(std::uint64_t time, Id signal, std::string value);
    void header();
    void moveto(std::uint64_t time);

    StreamedFile file_;
    std::vector<Signal> signals_;
    bool begun_ = false;
    std::uint64_t time_ = 0;
};

}  // namespace keld2::host

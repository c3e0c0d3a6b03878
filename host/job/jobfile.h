// The job file: one host session as TOML text, checked whole before anything runs.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "host/files/imagefile.h"
#include "host/job/jobcall.h"
#include "host/job/sharedsettings.h"

namespace keld2::host {

struct BufferPatch {
    std::int64_t offset = 0;
    std::vector<std::uint8_t> bytes;
};

// What the main buffer holds when the session starts.
struct BufferPlan {
    std::uint8_t fill = 255;
    Image image;              // addresses as in the file
    std::int64_t offset = 0;  // added to each of them
    std::vector<BufferPatch> patches;
};

struct Job {
    std::filesystem::path path;
    std::vector<SharedSetting> shared;
    BufferPlan buffer;
    std::int16_t num = 0;          // host instance number
    std::filesystem::path folder;  // the run's current folder
    std::vector<JobCall> calls;    // after bufcomkeld2

    // Bytes of the main buffer's block: buflength[0] + 2200; 0 when there can be none.
    std::int64_t buffersize() const;
};

// Throws HostError: 66 when the job or its image file cannot be opened, 65 with file, key, what is
// wrong and what was expected.
Job readjob(const std::filesystem::path& path);

}  // namespace keld2::host

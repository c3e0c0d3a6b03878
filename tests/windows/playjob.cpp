// An early-bound host: makes the blocks of a job, calls the class, and holds the stand-ins' trace
// against the job's own.
// usage: playjob JOBFOLDER   Exit 0 when they are equal.
#include <fstream>
#include <iostream>
#include <map>

#include "host/job/preparation.h"
#include "windows/client.h"

namespace {

using namespace keld2;
namespace fs = std::filesystem;

// The lines that a programmer sees.
std::vector<std::string> lines(const fs::path& path) {
    std::ifstream in(path);
    std::vector<std::string> list;
    for (std::string line; std::getline(in, line);)
        if (!line.starts_with("window ") && !line.starts_with("progress ")) list.push_back(line);
    return list;
}

void call(test::Client& client, const host::JobCall& one, std::int16_t num) {
    using Method = host::JobCall::Method;
    auto number = static_cast<std::int16_t>(one.argument.value_or(num));
    auto byte = static_cast<unsigned char>(one.argument.value_or(0));
    switch (one.method) {
        case Method::runKeld2Prg:
            client.run();
            break;
        case Method::bufcomkeld2:
            client->bufcomkeld2(&number);
            break;
        case Method::freesharebufferkeld2:
            client->freesharebufferkeld2();
            break;
        case Method::keld2warn:
            client->keld2warn(&byte);
            break;
        case Method::sinitkeld2:
            client->sinitkeld2();
            break;
        default:
            throw std::runtime_error("an editor");
    }
}

void play(const host::Job& job) {
    test::HostBlocks blocks;
    host::prepare(job, blocks.s);
    test::Client client;
    std::int16_t num = job.num;
    client->bufcomkeld2(&num);
    for (const host::JobCall& one : job.calls) call(client, one, job.num);
}

int compare(const fs::path& folder, const fs::path& trace) {
    const auto expected = lines(folder / "trace.txt");
    if (expected.empty()) std::cout << folder.string() << ": has no trace\n";
    if (expected.empty()) return 1;
    const auto got = lines(trace);
    for (std::size_t i = 0; i < std::max(expected.size(), got.size()); ++i) {
        const std::string want = i < expected.size() ? expected[i] : "(nothing)";
        const std::string have = i < got.size() ? got[i] : "(nothing)";
        if (want == have) continue;
        std::cout << folder.filename().string() << ": line " << i + 1 << ": " << have
                  << ", expected " << want << '\n';
        return 1;
    }
    return 0;
}

}  // namespace

int main(int count, char** arguments) {
    if (count != 2) return 64;
    const fs::path folder = fs::absolute(arguments[1]);
    const fs::path here = fs::current_path();
    const fs::path replay = folder / "replay.txt";
    if (!fs::exists(replay)) std::ofstream(here / "noreplay.txt");
    const fs::path trace = here / "trace.txt";
    fs::remove(trace);
    SetEnvironmentVariableW(L"KELD2_STANDIN_REPLAY",
                            (fs::exists(replay) ? replay : here / "noreplay.txt").c_str());
    SetEnvironmentVariableW(L"KELD2_STANDIN_TRACE", trace.c_str());
    try {
        const host::Job job = host::readjob(folder / "job.toml");
        fs::current_path(job.folder);
        play(job);
    } catch (const std::exception& error) {
        std::cout << folder.filename().string() << ": " << error.what() << '\n';
        return 1;
    }
    return compare(folder, trace);
}

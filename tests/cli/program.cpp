#include "cli/program.h"

#include <poll.h>
#include <pty.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <stdexcept>

namespace keld2::test {

Program::Program(const std::vector<std::string>& arguments, On on) {
    if (on == On::terminal)
        startonterminal(arguments);
    else
        startonpipes(arguments);
}

Program::~Program() {
    if (process_ > 0) {
        ::kill(process_, SIGKILL);
        ::waitpid(process_, nullptr, 0);
    }
    for (const Stream* stream : {&out_, &err_})
        if (stream->file >= 0) ::close(stream->file);
}

void Program::become(const std::vector<std::string>& arguments) {
    ::unsetenv("KELD2_DEVICE");
    ::setenv("KELD2_DEVICES", KELD2_TEST_DEVICES, 1);
    std::vector<char*> list{const_cast<char*>(KELD2_PROGRAM)};
    for (const std::string& argument : arguments)
        list.push_back(const_cast<char*>(argument.c_str()));
    list.push_back(nullptr);
    ::execv(KELD2_PROGRAM, list.data());
    ::_exit(127);
}

void Program::startonpipes(const std::vector<std::string>& arguments) {
    std::array<int, 2> out{}, err{};
    if (::pipe(out.data()) != 0 || ::pipe(err.data()) != 0) throw std::runtime_error("no pipe");
    process_ = ::fork();
    if (process_ == 0) {
        ::dup2(out[1], STDOUT_FILENO);
        ::dup2(err[1], STDERR_FILENO);
        for (const int file : {out[0], out[1], err[0], err[1]}) ::close(file);
        ::close(STDIN_FILENO);
        become(arguments);
    }
    ::close(out[1]);
    ::close(err[1]);
    out_.file = out[0];
    err_.file = err[0];
}

void Program::startonterminal(const std::vector<std::string>& arguments) {
    process_ = ::forkpty(&out_.file, nullptr, nullptr, nullptr);
    if (process_ == 0) become(arguments);
}

// One piece of output; false when both streams have ended.
bool Program::collect() {
    std::array<pollfd, 2> files{pollfd{out_.file, POLLIN, 0}, pollfd{err_.file, POLLIN, 0}};
    if (out_.file < 0 && err_.file < 0) return false;
    ::poll(files.data(), files.size(), -1);
    for (Stream* stream : {&out_, &err_}) {
        const pollfd& file = files[stream == &out_ ? 0 : 1];
        if (stream->file < 0 || file.revents == 0) continue;
        std::array<char, 4096> piece{};
        const ssize_t count = ::read(stream->file, piece.data(), piece.size());
        if (count > 0) {
            stream->text.append(piece.data(), static_cast<std::size_t>(count));
            continue;
        }
        ::close(stream->file);
        stream->file = -1;
    }
    return true;
}

bool Program::waitfor(const std::string& text) {
    const auto has = [&text](const Stream& stream) {
        return stream.text.find(text) != std::string::npos;
    };
    while (!has(out_) && !has(err_))
        if (!collect()) return false;
    return true;
}

void Program::signal(int number) const { ::kill(process_, number); }

void Program::type(const std::string& text) const {
    if (::write(out_.file, text.data(), text.size()) < 0) throw std::runtime_error("no terminal");
}

ProgramResult Program::finish() {
    while (collect()) {
    }
    int status = 0;
    ::waitpid(process_, &status, 0);
    process_ = -1;
    return {.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status),
            .out = out_.text,
            .err = err_.text};
}

}  // namespace keld2::test

// Running the program keld2 as a user or a script does.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <string>
#include <vector>

namespace keld2::test {

struct ProgramResult {
    int status = -1;  // exit status; 128 + signal when a signal ended the process
    std::string out;
    std::string err;  // on a terminal: empty, since both arrive in out
};

// A keld2 under way. Its output is collected while somebody waits for it.
class Program {
  public:
    enum class On { pipes, terminal };

    explicit Program(const std::vector<std::string>& arguments, On on = On::pipes);
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    // Collects until the text has come, on either output; false when the process ended before.
    bool waitfor(const std::string& text);
    void signal(int number) const;
    void type(const std::string& text) const;  // on a terminal
    ProgramResult finish();

  private:
    struct Stream {
        int file = -1;
        std::string text = {};
    };
    [[noreturn]] static void become(const std::vector<std::string>& arguments);
    void startonpipes(const std::vector<std::string>& arguments);
    void startonterminal(const std::vector<std::string>& arguments);
    bool collect();

    pid_t process_ = -1;
    Stream out_, err_;
};

}  // namespace keld2::test

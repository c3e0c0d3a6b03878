// Texts of svf make, played by a public SVF player into the simulated test access port.
//
// The player is openocd, which drives the port's lines over a socket; without it these tests are
// skipped.
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>

#include "cli/bench.h"
#include "host/catalogue/catalogue.h"
#include "host/files/files.h"
#include "host/svf/svftask.h"
#include "sim/chipimage.h"
#include "sim/logicchip.h"

namespace keld2::test {
namespace {

// The lines of a chip behind a local socket: '0' to '7' set TCK, TMS and TDI, 'R' asks for TDO, 'Q'
// ends. A clock takes a microsecond; pauses of the player do not count.
class BitBangPort {
  public:
    BitBangPort(const std::string& path, sim::TapChip& chip) : chip_(chip) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        path.copy(address.sun_path, sizeof address.sun_path - 1);
        listener_ = ::socket(AF_UNIX, SOCK_STREAM, 0);
        if (::bind(listener_, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
            ::listen(listener_, 1) != 0)
            throw std::runtime_error("no socket at " + path);
    }
    ~BitBangPort() { ::close(listener_); }
    BitBangPort(const BitBangPort&) = delete;
    BitBangPort& operator=(const BitBangPort&) = delete;

    // Serves one player until it leaves, or says nothing for ten seconds.
    void serve() {
        if (!readable(listener_)) return;
        const int player = ::accept(listener_, nullptr, nullptr);
        std::array<char, 4096> piece{};
        while (readable(player)) {
            const ssize_t count = ::read(player, piece.data(), piece.size());
            if (count <= 0) break;
            std::string answers;
            for (const char c : std::string_view(piece.data(), static_cast<std::size_t>(count)))
                take(c, answers);
            if (::send(player, answers.data(), answers.size(), MSG_NOSIGNAL) < 0) break;
        }
        ::close(player);
    }

  private:
    static bool readable(int file) {
        constexpr int patience = 10'000;  // ms
        pollfd one{file, POLLIN, 0};
        return ::poll(&one, 1, patience) > 0;
    }
    void take(char c, std::string& answers) {
        if (c == 'R') answers += chip_.tdo() ? '1' : '0';
        if (c < '0' || c > '7') return;
        const int lines = c - '0';
        const bool tck = (lines & 4) != 0;
        if (tck && !tck_) {
            chip_.clock((lines & 2) != 0, (lines & 1) != 0);
            chip_.elapse(1);
        }
        tck_ = tck;
    }

    sim::TapChip& chip_;
    int listener_ = -1;
    bool tck_ = false;
};

class PublicPlayer : public Bench {
  protected:
    // Pulses are short: the player does not wait for a socket that is full.
    static host::LogicDevice quickdevice() {
        host::LogicDevice device =
            host::logicdevice(host::Catalogue::standard().find("logic-17019"));
        device.programtime = device.erasetime = 100;
        return device;
    }
    PublicPlayer()
        : logic_(quickdevice()),
          chip_({.rows = logic_.rows,
                 .width = logic_.width,
                 .instructionbits = logic_.instructionbits,
                 .code = logic_.code,
                 .programtime = logic_.programtime,
                 .erasetime = logic_.erasetime}) {
        device_ = logic_.name;
    }
    void SetUp() override {
        if (std::system("command -v openocd > /dev/null") != 0) GTEST_SKIP() << "no openocd";
    }

    // The exit status of the player.
    int play(const std::string& text) {
        const std::string socket = file("port").string();
        std::filesystem::remove(socket);
        BitBangPort port(socket, chip_);
        const std::string svf = folder_.file("played.svf", text).string();
        const pid_t player = ::fork();
        if (player == 0) become(socket, svf);
        port.serve();
        int status = 0;
        ::waitpid(player, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    std::string text(host::SvfTask task, const std::string& cells) const {
        return host::makesvf(logic_, task, std::vector<std::uint8_t>(cells.begin(), cells.end()));
    }
    std::string log() const { return host::readtext(file("log")); }

    host::LogicDevice logic_;
    sim::LogicChip chip_;

  private:
    [[noreturn]] void become(const std::string& socket, const std::string& svf) const {
        const std::string command =
            "exec openocd -c 'adapter driver remote_bitbang; remote_bitbang port 0; "
            "remote_bitbang host " +
            socket +
            "; transport select jtag; reset_config none; jtag newtap chip tap -irlen 6; "
            "gdb_port disabled; tcl_port disabled; telnet_port disabled; init; svf " +
            svf + " quiet; shutdown' > " + file("log").string() + " 2>&1";
        ::execl("/bin/sh", "sh", "-c", command.c_str(), nullptr);
        ::_exit(127);
    }
};

TEST_F(PublicPlayer, LeavesTheSameRowsInTheChip) {
    std::string map;
    for (std::size_t i = 0; i < logic_.rows * logic_.width; ++i) map += i * i % 7 < 3 ? '1' : '0';
    ASSERT_EQ(play(text(host::SvfTask::program, map)), 0) << log();
    sim::saveimage(file("played"), device_, chip_.state());
    mustwork({"program", folder_
                             .file("map.jed", "\x02t*\nQF17019*\nF0*\nL0 " + map +
                                                  "*\n\x03"
                                                  "0000\n")
                             .string()});
    EXPECT_EQ(host::readtext(file("played")), host::readtext(chip()));
    // It reads rows back, too, and notices a wrong one.
    EXPECT_EQ(play(text(host::SvfTask::verify, map)), 0) << log();
    map.back() ^= 1;
    EXPECT_EQ(play(text(host::SvfTask::verify, map)), 1) << log();
    EXPECT_EQ(play(text(host::SvfTask::erase, map)), 0) << log();
}

}  // namespace
}  // namespace keld2::test

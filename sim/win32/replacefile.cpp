#include "sim/replacefile.h"

#include <windows.h>

#include <algorithm>
#include <system_error>

namespace keld2::sim {

namespace {

[[noreturn]] void refuse() {
    throw std::system_error(static_cast<int>(GetLastError()), std::system_category());
}

// The new file under its passing name; gone unless it has been put in its place.
class PassingFile {
  public:
    explicit PassingFile(const std::filesystem::path& wanted) {
        constexpr int names = 100;  // beside what dead processes have left
        const std::wstring begin =
            wanted.wstring() + L".new" + std::to_wstring(GetCurrentProcessId());
        for (int i = 0; i < names && file_ == INVALID_HANDLE_VALUE; ++i) {
            path_ = begin + L"-" + std::to_wstring(i);
            file_ = CreateFileW(path_.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                FILE_ATTRIBUTE_NORMAL, nullptr);
            if (file_ == INVALID_HANDLE_VALUE && GetLastError() != ERROR_FILE_EXISTS) break;
        }
        if (file_ == INVALID_HANDLE_VALUE) refuse();
    }
    ~PassingFile() {
        if (file_ != INVALID_HANDLE_VALUE) CloseHandle(file_);
        if (!placed_) DeleteFileW(path_.c_str());
    }
    PassingFile(const PassingFile&) = delete;
    PassingFile& operator=(const PassingFile&) = delete;

    void write(std::string_view bytes) {
        constexpr std::size_t most = 1 << 20;  // at a time
        while (!bytes.empty()) {
            const auto length = static_cast<DWORD>(std::min(bytes.size(), most));
            DWORD count = 0;
            if (WriteFile(file_, bytes.data(), length, &count, nullptr) == FALSE) refuse();
            bytes.remove_prefix(count);
        }
        if (FlushFileBuffers(file_) == FALSE) refuse();
    }

    void place(const std::filesystem::path& wanted) {
        CloseHandle(file_);
        file_ = INVALID_HANDLE_VALUE;
        if (MoveFileExW(path_.c_str(), wanted.c_str(),
                        MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) == FALSE)
            refuse();
        placed_ = true;
    }

  private:
    std::wstring path_;
    HANDLE file_ = INVALID_HANDLE_VALUE;
    bool placed_ = false;
};

}  // namespace

void replacefile(const std::filesystem::path& wanted, std::string_view bytes) {
    PassingFile file(wanted);
    file.write(bytes);
    file.place(wanted);
}

}  // namespace keld2::sim

// The shared variables: everything that host and plug-in know of a chip, a job and its result.
//
// Each variable is a typed array on a named block of shared memory. The table blocktable gives
// name, size, element type, count and who writes it, in mapping order; the last two rows are the
// main buffer and its neighbour, which are mapped after buflength is known.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <variant>

#include "shared/memmapped.h"
#include "shared/safearray.h"

namespace keld2 {

enum class Flag : std::int16_t { no = 0, yes = -1 };
inline bool isset(Flag flag) { return flag != Flag::no; }

enum class ElementType { byte, i16, i32, f64, flag, string };
enum class Writer { host, plugin, both, closed, none };  // closed: DevCore or the USB transport

struct BlockRow {
    std::string_view name;
    std::int32_t size;  // bytes, when the block has to be created; 0: buflength[0] + 2200
    ElementType type;
    std::uint32_t count;  // elements of the view; 0: as many as size
    Writer writer;
};

inline constexpr std::int32_t bufferextra = 2200;  // bytes of ibuffer beyond buflength[0]
extern const std::array<BlockRow, 62> blocktable;

// A shared variable with its two slots: the mapped block and the view on it.
template <typename T>
class SharedVariable : public SharedArray<T> {
  public:
    using SharedArray<T>::SharedArray;

    // Maps the block anew. On failure the variable keeps its single element.
    bool map(NamedMemory& memory, const std::string& block, std::int32_t size,
             std::uint32_t count) {
        view_.reset();
        block_ = std::make_unique<clsMemMapped>(memory);
        view_ = std::make_unique<clsSafeArray<T>>();
        if (!block_->OpenAndMapMemoryBlock(block, size)) return false;
        const auto fitting = static_cast<std::uint32_t>(block_->ViewSize() / sizeof(T));
        view_->AttachToArray(*this);
        view_->CountOfElements(1) = count < fitting ? count : fitting;
        view_->PointerToData() = block_->BaseAddress();
        return true;
    }
    void unmap() {
        if (view_) view_->ReleaseArray();
        if (block_) block_->UnMapFile();
    }

  private:
    std::unique_ptr<clsMemMapped> block_;
    std::unique_ptr<clsSafeArray<T>> view_;
};

// One text of a string variable. Assigning frees the old text and stores a new handle.
class SharedText {
  public:
    SharedText(StringHandle& handle, SharedStrings& strings) : handle_(handle), strings_(strings) {}
    operator std::u16string() const { return strings_.text(handle_); }
    std::u16string text() const { return strings_.text(handle_); }
    SharedText& operator=(std::u16string_view text);
    SharedText& operator=(const SharedText& other) { return *this = other.text(); }
    SharedText(const SharedText&) = default;
    SharedText& operator+=(std::u16string_view text) { return *this = this->text().append(text); }
    std::size_t length() const { return text().size(); }

  private:
    StringHandle& handle_;
    SharedStrings& strings_;
};

class SharedTexts : public SharedVariable<StringHandle> {
  public:
    SharedTexts(const char* name, SharedStrings& strings)
        : SharedVariable<StringHandle>(name), strings_(strings) {}
    SharedText operator[](std::int64_t index) {
        return {SharedVariable<StringHandle>::operator[](index), strings_};
    }
    // The text of an index, empty beyond the array: an operation number may have no name.
    std::u16string textorempty(std::int64_t index) {
        return index >= 0 && index < size() ? (*this)[index].text() : std::u16string{};
    }

  private:
    SharedStrings& strings_;
};

using AnyVariable = std::variant<SharedVariable<std::uint8_t>*, SharedVariable<std::int16_t>*,
                                 SharedVariable<std::int32_t>*, SharedVariable<double>*,
                                 SharedVariable<Flag>*, SharedTexts*>;

class SharedVariables {
  public:
    SharedVariables(NamedMemory& memory, SharedStrings& strings);
    SharedVariables(const SharedVariables&) = delete;
    SharedVariables& operator=(const SharedVariables&) = delete;

    using Failure = std::function<void()>;  // called once for each block that cannot be mapped

    // Maps all blocks of host instance num but the main buffer's two.
    void maprows(std::int16_t num, const Failure& failed);
    // Maps the main buffer with buflength[0] + 2200 bytes, and ibuffer66.
    void mapbuffers(const Failure& failed);
    void map(std::int16_t num, const Failure& failed);
    // Releases the main buffer's two blocks; all others stay mapped.
    void releasebuffers();

    // The variable of a table row's name; nullptr variants never occur. Throws RunFault when
    // there is no such variable.
    AnyVariable variable(std::string_view name);
    AnyVariable variable(std::size_t row);  // index into blocktable

    SharedVariable<std::uint8_t> ibuf1{"ibuf1"};  // short answer frame of the programmer
    SharedVariable<std::uint8_t> ubuf1{"ubuf1"};  // short command frame to the programmer
    SharedVariable<std::uint8_t> ubuf2{"ubuf2"};
    SharedVariable<std::uint8_t> ibuf2{"ibuf2"};  // target of bulk reads
    SharedVariable<Flag> usbpip0readresult{"usbpip0readresult"};
    SharedVariable<std::uint8_t> usbpip2readresult{"usbpip2readresult"};  // [0]: BulkState
    SharedVariable<std::uint8_t> arrybuf{"arrybuf"};
    SharedTexts prgnote;                                  // the host's note texts, ready translated
    SharedVariable<std::uint8_t> prgresult{"prgresult"};  // [0]: result, [1]: the host's wish
    SharedVariable<double> wltbigendbuf{
        "wltbigendbuf"};  // first, last chip address; buffer address
    SharedVariable<std::uint8_t> bvccpin{"bvccpin"};
    SharedVariable<std::uint8_t> bgndpin{"bgndpin"};
    SharedVariable<std::uint8_t> bvpppin{"bvpppin"};
    SharedVariable<std::int16_t> bvcc{"bvcc"};  // units of 10 mV
    SharedVariable<std::int16_t> bvcch{"bvcch"};
    SharedVariable<std::int16_t> bvpp{"bvpp"};  // units of 10 mV; 0: none
    SharedVariable<std::int32_t> buflength{"buflength"};
    SharedVariable<std::int32_t> Language{"Language"};
    SharedVariable<std::int16_t> pagelength{"pagelength"};
    SharedVariable<std::int16_t> modeltype{"modeltype"};
    SharedVariable<std::uint8_t> wfig{"wfig"};
    SharedVariable<Flag> chipidtestmode{"chipidtestmode"};
    SharedVariable<std::int32_t> pwte{"pwte"};
    SharedVariable<std::uint8_t> figmode{"figmode"};
    SharedVariable<std::int16_t> chippin{"chippin"};
    SharedVariable<std::int16_t> wretry{"wretry"};
    SharedVariable<std::uint8_t> prgmode{"prgmode"};  // [0]: algorithm, [1]: percent done
    SharedVariable<std::uint8_t> wordmode{"wordmode"};
    SharedVariable<std::uint8_t> woption{"woption"};
    SharedVariable<std::uint8_t> wautonum{"wautonum"};
    SharedVariable<std::int32_t> tlength{"tlength"};
    SharedVariable<std::int16_t> compid{"compid"};
    SharedVariable<std::int16_t> typeid_{"typeid"};
    SharedVariable<std::uint8_t> wsign{"wsign"};
    SharedVariable<std::uint8_t> buftype{"buftype"};
    SharedVariable<std::uint8_t> autoprg{"autoprg"};
    SharedVariable<std::uint8_t> rambknum{"rambknum"};
    SharedTexts MainmnuPrg;  // names of the operations
    SharedTexts MainRtstr;   // [0]: log, [1]: the compare's report
    SharedVariable<std::int16_t> ubuflg{"ubuflg"};
    SharedVariable<std::int32_t> ramlg{"ramlg"};
    SharedVariable<std::int32_t> wlverifyvcc{"wlverifyvcc"};  // steps of 5 %
    SharedTexts algo;
    SharedVariable<std::uint8_t> figvol{"figvol"};
    SharedVariable<std::uint8_t> wwarnno{"wwarnno"};
    SharedTexts spdter;
    SharedVariable<std::uint8_t> menu{"menu"};
    SharedVariable<std::uint8_t> order{"order"};
    SharedTexts pintestmap;
    SharedVariable<std::uint8_t> wordmode0{"wordmode0"};
    SharedTexts ppin;
    SharedVariable<std::int32_t> serial{"serial"};
    SharedVariable<std::uint8_t> typeformat{"typeformat"};
    SharedVariable<std::uint8_t> ICnum{"ICnum"};
    SharedTexts wcompany;
    SharedTexts wtype;
    SharedVariable<Flag> usbable{"usbable"};
    SharedTexts algorithm;
    SharedVariable<std::uint8_t> selmode{"selmode"};
    SharedVariable<std::uint8_t> algobuf{"algobuf"};
    SharedVariable<std::uint8_t> ibuffer{"ibuffer"};  // the main buffer: the chip's data image
    SharedVariable<std::uint8_t> ibuffer66{"ibuffer66"};

  private:
    NamedMemory& memory_;
};

}  // namespace keld2

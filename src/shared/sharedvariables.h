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

    // The blocks in their order. Those without a comment belong to the host alone: they are mapped,
    // but neither read nor written. Who writes the others stands in blocktable.
    SharedVariable<std::uint8_t> ibuf1{"ibuf1"};  // answer frame of the programmer: status record
    // command frame to the programmer; keeps what a frame does not write
    SharedVariable<std::uint8_t> ubuf1{"ubuf1"};
    SharedVariable<std::uint8_t> ubuf2{"ubuf2"};
    SharedVariable<std::uint8_t> ibuf2{"ibuf2"};  // target of bulk reads
    SharedVariable<Flag> usbpip0readresult{"usbpip0readresult"};
    SharedVariable<std::uint8_t> usbpip2readresult{"usbpip2readresult"};  // [0]: BulkState
    SharedVariable<std::uint8_t> arrybuf{"arrybuf"};
    SharedTexts prgnote;  // the host's note texts, ready translated; see note in shared/notes.h
    // [0]: result, [1]: wish of the host; 0: the sequence, else program; 1: nothing; else an
    // operation
    SharedVariable<std::uint8_t> prgresult{"prgresult"};
    // [0], [1]: first and last chip address of the job, [2]: buffer address of the first
    SharedVariable<double> wltbigendbuf{"wltbigendbuf"};
    // socket pins that take VCC: [0], [1]; 0: none
    SharedVariable<std::uint8_t> bvccpin{"bvccpin"};
    // socket pins that take ground: [0], [1]; 0: none
    SharedVariable<std::uint8_t> bgndpin{"bgndpin"};
    SharedVariable<std::uint8_t> bvpppin{"bvpppin"};  // [0]: socket pin that takes VPP; 0: none
    SharedVariable<std::int16_t> bvcc{"bvcc"};        // [0]: nominal VCC in units of 10 mV
    // [0]: microcontrollers: bytes of the ID area; fixed logic: bits of a zero shift
    SharedVariable<std::int16_t> bvcch{"bvcch"};
    SharedVariable<std::int16_t> bvpp{"bvpp"};  // [0]: VPP in units of 10 mV; 0: none
    // [0]: bytes of the main buffer, to which 2200 are added
    SharedVariable<std::int32_t> buflength{"buflength"};
    // [0]: offset of the language's block of texts, 0 or a multiple of 3000
    SharedVariable<std::int32_t> Language{"Language"};
    SharedVariable<std::int16_t> pagelength{"pagelength"};  // [0]: bytes of a page
    // [0]: class of the device, for the dispatch; [2]: held against figvol[1]
    SharedVariable<std::int16_t> modeltype{"modeltype"};
    SharedVariable<std::uint8_t> wfig{"wfig"};
    // [0]: whether the chip's id is checked before the operation
    SharedVariable<Flag> chipidtestmode{"chipidtestmode"};
    SharedVariable<std::int32_t> pwte{"pwte"};        // [0]: write time; its unit is the family's
    SharedVariable<std::uint8_t> figmode{"figmode"};  // [0]: selection code of modeselect
    SharedVariable<std::int16_t> chippin{"chippin"};
    // [0]: further pauses of each erase poll of the page family
    SharedVariable<std::int16_t> wretry{"wretry"};
    // [0]: family, [1]: percent done, [2]: 0 from each start on
    SharedVariable<std::uint8_t> prgmode{"prgmode"};
    SharedVariable<std::uint8_t> wordmode{"wordmode"};  // [0]: bytes of a word of an ARM device
    // [0]: option of the algorithm: clears before an erase, or the direction of a fuse map
    SharedVariable<std::uint8_t> woption{"woption"};
    SharedVariable<std::uint8_t> wautonum{"wautonum"};  // [0]: steps in autoprg; 0: no sequence
    // [0]: bytes of the device's image, or its fuses
    SharedVariable<std::int32_t> tlength{"tlength"};
    SharedVariable<std::int16_t> compid{"compid"};   // [0]: expected maker's code; 0: no id check
    SharedVariable<std::int16_t> typeid_{"typeid"};  // [0]: expected device code
    SharedVariable<std::uint8_t> wsign{"wsign"};     // [1], [2]: version bytes of an ARM start-up
    // [0]: 128: the data of an ARM program lie in a file
    SharedVariable<std::uint8_t> buftype{"buftype"};
    SharedVariable<std::uint8_t> autoprg{"autoprg"};    // operation numbers of the sequence
    SharedVariable<std::uint8_t> rambknum{"rambknum"};  // [0]: RAM bank of an ARM device's frames
    SharedTexts MainmnuPrg;                         // names of the operations, by operation number
    SharedTexts MainRtstr;                          // [0]: log, [1]: the compare's report
    SharedVariable<std::int16_t> ubuflg{"ubuflg"};  // [0]: block length in bytes for the transport
    SharedVariable<std::int32_t> ramlg{"ramlg"};  // [0]: bytes of a transfer block of an ARM device
    // [0]: verify margin in steps of 5 % of VCC; 0: nominal alone
    SharedVariable<std::int32_t> wlverifyvcc{"wlverifyvcc"};
    SharedTexts algo;
    SharedVariable<std::uint8_t> figvol{"figvol"};  // [1]: held against modeltype[2]
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
    SharedVariable<Flag> usbable{"usbable"};  // [3]: picks the row of the ARM start-up
    SharedTexts algorithm;  // [0] to [2]: parts of the names of an ARM device's algorithm files
    SharedVariable<std::uint8_t> selmode{"selmode"};  // [0]: bits that select the ARM modules
    SharedVariable<std::uint8_t> algobuf{"algobuf"};  // image of the algorithm file
    // the main buffer: the chip's data image, a fuse a byte '0' or '1'
    SharedVariable<std::uint8_t> ibuffer{"ibuffer"};
    SharedVariable<std::uint8_t> ibuffer66{"ibuffer66"};

  private:
    NamedMemory& memory_;
};

}  // namespace keld2

// SharedArray: an array variable with a descriptor. clsSafeArray: the view that points such a
// variable at a block of memory and restores it when it lets go.
#pragma once

#include <atomic>
#include <cstdint>
#include <string>

#include "platform/fault.h"

namespace keld2 {

struct ArrayHeader {
    std::uint16_t dimensions = 1;
    std::uint16_t features = 0;
    std::uint32_t elementsize = 0;  // bytes
    std::uint32_t locks = 0;
    void* data = nullptr;
    std::uint32_t count = 0;  // of dimension 1
    std::int32_t lowerbound = 0;
};

// An array variable. Unattached it owns a single element.
template <typename T>
class SharedArray {
  public:
    explicit SharedArray(const char* name) : name_(name) {}
    SharedArray(const SharedArray&) = delete;
    SharedArray& operator=(const SharedArray&) = delete;

    // An index at or beyond the count is a RunFault that names the variable.
    T& operator[](std::int64_t index) { return data()[checked(index)]; }
    const T& operator[](std::int64_t index) const { return data()[checked(index)]; }

    // The same cell read or written whole and in order with other threads.
    T acquire(std::int64_t index) {
        return std::atomic_ref<T>(data()[checked(index)]).load(std::memory_order_acquire);
    }
    void release(std::int64_t index, T value) {
        std::atomic_ref<T>(data()[checked(index)]).store(value, std::memory_order_release);
    }

    T* data() const { return static_cast<T*>(header_.data); }
    std::int64_t size() const { return header_.count; }
    bool holds(std::int64_t first, std::int64_t last) const {  // are both within the array?
        return first >= 0 && last < size() && first <= last;
    }
    const char* name() const { return name_; }
    ArrayHeader& header() { return header_; }

  private:
    std::size_t checked(std::int64_t index) const {
        if (index < 0 || index >= size())
            throw RunFault(
                "index " + std::to_string(index) + " outside 0 to " + std::to_string(size() - 1),
                name_);
        return static_cast<std::size_t>(index);
    }

    const char* name_;
    T own_{};
    ArrayHeader header_{.elementsize = sizeof(T), .data = &own_, .count = 1};
};

// The view. While attached its properties write straight into the array's live header.
template <typename T>
class clsSafeArray {
  public:
    clsSafeArray() = default;
    ~clsSafeArray() { ReleaseArray(); }
    clsSafeArray(const clsSafeArray&) = delete;
    clsSafeArray& operator=(const clsSafeArray&) = delete;

    // Takes the array over; an earlier attachment is released first.
    void AttachToArray(SharedArray<T>& array) {
        ReleaseArray();
        live_ = &array.header();
        saved_ = *live_;
    }
    // Writes the saved header back, so that the array owns its one element again.
    void ReleaseArray() {
        if (live_ != nullptr) *live_ = saved_;
        live_ = nullptr;
    }
    bool attached() const { return live_ != nullptr; }

    std::uint16_t& Dimensions() { return live().dimensions; }
    std::uint16_t& Features() { return live().features; }
    std::uint32_t& SizeofElements() { return live().elementsize; }
    std::uint32_t& Locks() { return live().locks; }
    void*& PointerToData() { return live().data; }
    std::int32_t& LowerBound(int dimension) {
        return (checkdimension(dimension), live().lowerbound);
    }
    std::uint32_t& CountOfElements(int dimension) {
        return (checkdimension(dimension), live().count);
    }

  private:
    ArrayHeader& live() const {
        if (live_ == nullptr) throw RunFault("view is not attached", "clsSafeArray");
        return *live_;
    }
    static void checkdimension(int dimension) {
        if (dimension != 1) throw RunFault("array has one dimension", "clsSafeArray");
    }

    ArrayHeader* live_ = nullptr;
    ArrayHeader saved_;
};

}  // namespace keld2

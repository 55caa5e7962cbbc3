#pragma once

#include <cstddef>
#include <cstdlib>
#include <limits>
#include <new>
#include <span>
#include <type_traits>
#include <utility>

#ifdef __linux__
#include <sys/mman.h>
#endif

namespace ostrella {

/// An array of plain values that starts without contents, for results and scratch space of tens of
/// megabytes. Filling fresh memory costs more in page faults than in stores; so large buffers lie
/// on 2 MiB boundaries and ask Linux for huge pages. Move-only.
template <class T>
class LargeBuffer {
    static_assert(std::is_trivially_copyable_v<T> && std::is_trivially_destructible_v<T>);

public:
    LargeBuffer() = default;

    /// Room for `size` values, unset. Throws std::bad_alloc.
    explicit LargeBuffer(std::size_t size) : data_(allocate(size)), size_(size) {}

    LargeBuffer(LargeBuffer&& other) noexcept
        : data_(std::exchange(other.data_, nullptr)), size_(std::exchange(other.size_, 0)) {}
    LargeBuffer& operator=(LargeBuffer&& other) noexcept {
        std::swap(data_, other.data_);
        std::swap(size_, other.size_);
        return *this;
    }
    LargeBuffer(const LargeBuffer&) = delete;
    LargeBuffer& operator=(const LargeBuffer&) = delete;
    ~LargeBuffer() { std::free(data_); }

    T* data() { return data_; }
    const T* data() const { return data_; }
    std::size_t size() const { return size_; }
    T& operator[](std::size_t i) { return data_[i]; }
    const T& operator[](std::size_t i) const { return data_[i]; }
    T* begin() { return data_; }
    T* end() { return data_ + size_; }
    const T* begin() const { return data_; }
    const T* end() const { return data_ + size_; }

    /// Forgets all values behind the first `size`; the memory stays.
    void truncate(std::size_t size) { size_ = size < size_ ? size : size_; }

private:
    static constexpr std::size_t hugePage = std::size_t{2} << 20;

    static T* allocate(std::size_t size) {
        if (size > std::numeric_limits<std::size_t>::max() / 2 / sizeof(T))
            throw std::bad_alloc();
        const std::size_t bytes = size * sizeof(T);
        if (bytes == 0)
            return nullptr;
        void* memory = nullptr;
        if (bytes < 2 * hugePage) {
            memory = std::malloc(bytes);
        } else {
            memory = std::aligned_alloc(hugePage, (bytes + hugePage - 1) / hugePage * hugePage);
#ifdef __linux__
            // Only a hint: a kernel without huge pages serves the same memory in small ones.
            if (memory != nullptr)
                madvise(memory, (bytes + hugePage - 1) / hugePage * hugePage, MADV_HUGEPAGE);
#endif
        }
        if (memory == nullptr)
            throw std::bad_alloc();
        return static_cast<T*>(memory);
    }

    T* data_ = nullptr;
    std::size_t size_ = 0;
};

} // namespace ostrella

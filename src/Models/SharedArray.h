#pragma once

#include "Models/LargeBuffer.h"

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <memory>
#include <span>
#include <type_traits>
#include <utility>
#include <vector>

namespace ostrella {

/// An immutable array whose copies share one buffer, so that meshes and fields pass between threads
/// by value at no cost. Safe to read from any number of threads.
template <class T>
class SharedArray {
public:
    SharedArray() = default;

    /// Takes over the elements of `values`, without a copy.
    SharedArray(std::vector<T> values)
        : size_(values.size()) { // NOLINT(google-explicit-constructor)
        if (size_ == 0)
            return;
        auto owner = std::make_shared<const std::vector<T>>(std::move(values));
        elements_ = std::shared_ptr<const T>(owner, owner->data());
    }

    /// Takes over a filled buffer, without a copy.
    SharedArray(LargeBuffer<T> values)
        : size_(values.size()) { // NOLINT(google-explicit-constructor)
        if (size_ == 0)
            return;
        auto owner = std::make_shared<const LargeBuffer<T>>(std::move(values));
        elements_ = std::shared_ptr<const T>(owner, owner->data());
    }

    SharedArray(std::initializer_list<T> values) : SharedArray(std::vector<T>(values)) {}

    std::size_t size() const { return size_; }
    bool empty() const { return size_ == 0; }
    const T* data() const { return elements_.get(); }
    const T& operator[](std::size_t i) const { return data()[i]; }
    const T* begin() const { return data(); }
    const T* end() const { return data() + size_; }
    const T& front() const { return data()[0]; }
    const T& back() const { return data()[size_ - 1]; }
    std::span<const T> span() const { return {data(), size_}; }

    /// The same buffer as the bytes that its values consist of.
    SharedArray<std::byte> bytes() const {
        static_assert(std::is_trivially_copyable_v<T>);
        SharedArray<std::byte> same;
        same.elements_ = std::shared_ptr<const std::byte>(
            elements_, reinterpret_cast<const std::byte*>(elements_.get()));
        same.size_ = size_ * sizeof(T);
        return same;
    }

    /// True where both are one buffer, not merely equal ones.
    bool sharesBufferWith(const SharedArray& other) const {
        return data() == other.data() && size_ == other.size_;
    }

    friend bool operator==(const SharedArray& a, const SharedArray& b) {
        return std::equal(a.begin(), a.end(), b.begin(), b.end());
    }

private:
    template <class>
    friend class SharedArray;

    std::shared_ptr<const T> elements_;
    std::size_t size_ = 0;
};

} // namespace ostrella

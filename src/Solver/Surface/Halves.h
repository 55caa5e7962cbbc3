#pragma once

#include <cstddef>
#include <exception>
#include <system_error>
#include <thread>

namespace ostrella {

/// Calls work(first, end, half) for 0 to `count`: at once for less than `least`, else in two halves
/// on two threads. Throws what either throws, the first half's before the second's.
template <class Work>
void inHalves(std::size_t count, std::size_t least, Work&& work) {
    if (count < least || count < 2) {
        work(std::size_t{0}, count, 0);
        return;
    }
    const std::size_t middle = count / 2;
    std::exception_ptr secondError;
    const auto second = [&] {
        try {
            work(middle, count, 1);
        } catch (...) {
            secondError = std::current_exception();
        }
    };
    std::thread helper;
    try {
        helper = std::thread(second);
    } catch (const std::system_error&) {
        // No thread to be had: this one does both.
    }
    std::exception_ptr firstError;
    try {
        work(std::size_t{0}, middle, 0);
    } catch (...) {
        firstError = std::current_exception();
    }
    if (helper.joinable())
        helper.join();
    else if (!firstError)
        second();
    if (firstError)
        std::rethrow_exception(firstError);
    if (secondError)
        std::rethrow_exception(secondError);
}

} // namespace ostrella

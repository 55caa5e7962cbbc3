#pragma once

#include <QObject>

#include <memory>

namespace ostrella::test {

/// Counts how often an object sends a signal, from now on.
class Changes {
public:
    template <typename Object, typename Signal>
    Changes(Object* object, Signal signal) {
        QObject::connect(object, signal, object, [count = count_] { ++*count; });
    }

    int count() const { return *count_; }

private:
    std::shared_ptr<int> count_ = std::make_shared<int>(0);
};

} // namespace ostrella::test

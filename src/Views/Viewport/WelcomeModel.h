#pragma once

#include "Views/SharedObjects.h"

#include <QObject>
#include <QVariantList>
#include <QVariantMap>
#include <QtQml/qqmlregistration.h>

#include <cstdint>
#include <map>
#include <optional>
#include <string>

namespace ostrella {

struct PlatformWords;

/// The card that stands where there is nothing else to show: samples to begin with. Main thread
/// only.
class WelcomeModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the viewport's model")
    /// `title`, `tagLine`, `samples`, `demo` and `load`.
    Q_PROPERTY(QVariantMap texts READ texts CONSTANT)
    /// Maps with `id`, `name`, `symbol`, `facets`, `help` and `label`. `facets` is empty until the
    /// count is known.
    Q_PROPERTY(QVariantList samples READ samples NOTIFY changed)

public:
    WelcomeModel(
        const SharedObjects& shared, const PlatformWords& words, QObject* parent = nullptr);

    QVariantMap texts() const;
    QVariantList samples() const;

    /// Counts the samples' facets in the background, once.
    Q_INVOKABLE void count();
    Q_INVOKABLE void loadSample(const QString& id);
    Q_INVOKABLE void runDemo();
    Q_INVOKABLE void loadOwn();

Q_SIGNALS:
    void changed();

private:
    SharedObjects shared_;
    const PlatformWords& words_;
    bool isCounting_ = false;
    std::map<std::string, std::int64_t, std::less<>> counts_;
};

} // namespace ostrella

#pragma once

#include <QObject>

#include <memory>
#include <optional>

namespace ostrella {

/// How far a run has come, on the application's icon where the desktop shows programs (task bar,
/// dock). Where the desktop cannot show it, nothing happens. Main thread only.
class TaskBarProgress : public QObject {
public:
    explicit TaskBarProgress(QObject* parent = nullptr);
    /// Takes it away.
    ~TaskBarProgress() override;

    /// From 0 to 1, and what lies beyond as its end; nothing, or no number, takes it away. Steps
    /// that nobody would see are not passed on.
    void set(std::optional<double> fraction);

private:
    /// Of the whole way; finer than any icon.
    static constexpr int stepCount = 500;

    /// Has the desktop show `steps_`, or as soon as it can be told.
    void show();

    /// What the system needs to show it.
    class Bar;
    std::unique_ptr<Bar> bar_;
    std::optional<int> steps_;
};

} // namespace ostrella

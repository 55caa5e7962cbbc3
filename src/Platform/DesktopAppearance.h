#pragma once

#include <QObject>

#include <functional>
#include <memory>
#include <optional>

namespace ostrella {

/// How the user wants windows to look, as the desktop says, kept up to date while the application
/// runs. The desktop is asked without waiting: until it answers, and where nobody does, the
/// palette's window colour tells light from dark, motion is welcome and texts have their own size.
/// The environment has the last word: OSTRELLA_APPEARANCE (dark, light), OSTRELLA_REDUCED_MOTION
/// (1, 0) and OSTRELLA_TEXT_SCALE (0.5 to 3), read when the object is made. Main thread only.
class DesktopAppearance : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isDark READ isDark NOTIFY isDarkChanged)
    Q_PROPERTY(
        bool prefersReducedMotion READ prefersReducedMotion NOTIFY prefersReducedMotionChanged)
    Q_PROPERTY(double textScale READ textScale NOTIFY textScaleChanged)

public:
    /// What may be known about it; a part that nobody told is absent.
    struct Values {
        std::optional<bool> isDark;
        std::optional<bool> prefersReducedMotion;
        std::optional<double> textScale;

        bool operator==(const Values&) const = default;
        /// These, with what is absent taken from `other`.
        Values completedBy(const Values& other) const;
    };

    static constexpr double leastTextScale = 0.5;
    static constexpr double largestTextScale = 3;

    explicit DesktopAppearance(QObject* parent = nullptr);
    ~DesktopAppearance() override;

    bool isDark() const { return isDark_; }
    bool prefersReducedMotion() const { return prefersReducedMotion_; }
    /// A factor on the size of texts, 1 as a rule.
    double textScale() const { return textScale_; }

    /// What the environment says; a word that means nothing is no word.
    static Values overrides();
    /// `scale` if it is one that users can ask for.
    static std::optional<double> textScale(double scale);

Q_SIGNALS:
    void isDarkChanged();
    void prefersReducedMotionChanged();
    void textScaleChanged();

private:
    using Accept = std::function<void(const Values&)>;

    /// Tells what the desktop says, now or later, and whenever it changes; ends with the object.
    static std::unique_ptr<QObject> follow(Accept accept);

    void accept(const Values& desktop);

    Values overrides_ = overrides();
    bool isDark_ = false;
    bool prefersReducedMotion_ = false;
    double textScale_ = 1;
    std::unique_ptr<QObject> follower_;
};

} // namespace ostrella

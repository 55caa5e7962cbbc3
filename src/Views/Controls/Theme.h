#pragma once

#include "Brand/Brand.h"

#include <QColor>
#include <QFont>
#include <QObject>
#include <QtQml/qqmlregistration.h>

class QJSEngine;
class QQmlEngine;

namespace ostrella {

/// Brand's colours and type for QML, in the appearance and the size of text that the desktop asks
/// for at the moment, and the measures that views share. There is one; whoever starts the window
/// tells it what the desktop says. Lengths are in points and grow with the text.
class Theme final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool dark READ isDark WRITE setDark NOTIFY changed)
    Q_PROPERTY(qreal textScale READ textScale WRITE setTextScale NOTIFY changed)
    Q_PROPERTY(bool reducedMotion READ reducedMotion WRITE setReducedMotion NOTIFY changed)
    // Factors for bindings, which don't notice when a function's answer changes.
    Q_PROPERTY(qreal lengthScale READ lengthScale NOTIFY changed)
    Q_PROPERTY(int motion READ motion NOTIFY changed)

    Q_PROPERTY(QColor surfaceBase READ surfaceBase NOTIFY changed)
    Q_PROPERTY(QColor surfaceRaised READ surfaceRaised NOTIFY changed)
    Q_PROPERTY(QColor surfaceSunken READ surfaceSunken NOTIFY changed)
    Q_PROPERTY(QColor textPrimary READ textPrimary NOTIFY changed)
    Q_PROPERTY(QColor textSecondary READ textSecondary NOTIFY changed)
    Q_PROPERTY(QColor textTertiary READ textTertiary NOTIFY changed)
    Q_PROPERTY(QColor textDisabled READ textDisabled NOTIFY changed)
    Q_PROPERTY(QColor accentPrimary READ accentPrimary NOTIFY changed)
    Q_PROPERTY(QColor accentPressed READ accentPressed NOTIFY changed)
    Q_PROPERTY(QColor accentOn READ accentOn NOTIFY changed)
    Q_PROPERTY(QColor accentSubtle READ accentSubtle NOTIFY changed)
    Q_PROPERTY(QColor statusSuccess READ statusSuccess NOTIFY changed)
    Q_PROPERTY(QColor statusWarning READ statusWarning NOTIFY changed)
    Q_PROPERTY(QColor statusError READ statusError NOTIFY changed)
    Q_PROPERTY(QColor statusInfo READ statusInfo NOTIFY changed)
    Q_PROPERTY(QColor borderSubtle READ borderSubtle NOTIFY changed)
    Q_PROPERTY(QColor borderStrong READ borderStrong NOTIFY changed)
    Q_PROPERTY(QColor floatingShadow READ floatingShadow CONSTANT)
    Q_PROPERTY(QColor sceneBase READ sceneBase CONSTANT)
    Q_PROPERTY(QColor sceneText READ sceneText CONSTANT)
    Q_PROPERTY(QColor sceneTextTertiary READ sceneTextTertiary CONSTANT)
    Q_PROPERTY(QColor sceneAccent READ sceneAccent CONSTANT)
    Q_PROPERTY(QColor sceneError READ sceneError CONSTANT)

    // Looks of states, made of the colours above.
    Q_PROPERTY(QColor washHover READ washHover NOTIFY changed)
    Q_PROPERTY(QColor washPressed READ washPressed NOTIFY changed)
    Q_PROPERTY(QColor buttonFill READ buttonFill NOTIFY changed)
    Q_PROPERTY(QColor buttonHover READ buttonHover NOTIFY changed)
    Q_PROPERTY(QColor buttonPressed READ buttonPressed NOTIFY changed)
    Q_PROPERTY(QColor destructiveHover READ destructiveHover NOTIFY changed)
    Q_PROPERTY(QColor accentHover READ accentHover NOTIFY changed)
    Q_PROPERTY(QColor fieldFill READ fieldFill NOTIFY changed)
    Q_PROPERTY(QColor segmentFill READ segmentFill NOTIFY changed)
    Q_PROPERTY(QColor progressFill READ progressFill NOTIFY changed)
    Q_PROPERTY(QColor keyCapOnAccent READ keyCapOnAccent NOTIFY changed)

    Q_PROPERTY(QFont label READ label NOTIFY changed)
    Q_PROPERTY(QFont sectionLabel READ sectionLabel NOTIFY changed)
    Q_PROPERTY(QFont monoSmall READ monoSmall NOTIFY changed)
    Q_PROPERTY(QFont mono READ mono NOTIFY changed)
    Q_PROPERTY(QFont monoSemibold READ monoSemibold NOTIFY changed)
    Q_PROPERTY(QFont caption READ caption NOTIFY changed)
    Q_PROPERTY(QFont body READ body NOTIFY changed)
    Q_PROPERTY(QFont bodyMedium READ bodyMedium NOTIFY changed)
    Q_PROPERTY(QFont hero READ hero NOTIFY changed)
    Q_PROPERTY(QFont segment READ segment NOTIFY changed)
    Q_PROPERTY(QFont keys READ keys NOTIFY changed)
    Q_PROPERTY(QFont title READ title NOTIFY changed)
    Q_PROPERTY(QFont display READ display NOTIFY changed)
    // The same with digits of one width, for numbers that change.
    Q_PROPERTY(QFont captionNumbers READ captionNumbers NOTIFY changed)
    Q_PROPERTY(QFont bodyNumbers READ bodyNumbers NOTIFY changed)
    Q_PROPERTY(QFont bodyMediumNumbers READ bodyMediumNumbers NOTIFY changed)

    Q_PROPERTY(int toolbarHeight READ toolbarHeight NOTIFY changed)
    Q_PROPERTY(int clusterHeight READ clusterHeight NOTIFY changed)
    Q_PROPERTY(int itemHeight READ itemHeight NOTIFY changed)
    Q_PROPERTY(int statusBarHeight READ statusBarHeight NOTIFY changed)
    Q_PROPERTY(int panelHeaderHeight READ panelHeaderHeight NOTIFY changed)
    Q_PROPERTY(int rowHeight READ rowHeight NOTIFY changed)
    Q_PROPERTY(int fieldHeight READ fieldHeight NOTIFY changed)
    Q_PROPERTY(int buttonHeight READ buttonHeight NOTIFY changed)
    Q_PROPERTY(int runHeight READ runHeight NOTIFY changed)
    Q_PROPERTY(int progressHeight READ progressHeight NOTIFY changed)
    Q_PROPERTY(int cardHeadHeight READ cardHeadHeight NOTIFY changed)
    Q_PROPERTY(int cardRowHeight READ cardRowHeight NOTIFY changed)
    Q_PROPERTY(int settingsRowHeight READ settingsRowHeight NOTIFY changed)
    Q_PROPERTY(int aboutRowHeight READ aboutRowHeight NOTIFY changed)
    Q_PROPERTY(int segmentsHeight READ segmentsHeight NOTIFY changed)
    Q_PROPERTY(int segmentHeight READ segmentHeight NOTIFY changed)
    Q_PROPERTY(int chipHeight READ chipHeight NOTIFY changed)
    Q_PROPERTY(int keyCapHeight READ keyCapHeight NOTIFY changed)
    Q_PROPERTY(int switchHeight READ switchHeight NOTIFY changed)
    Q_PROPERTY(int switchWidth READ switchWidth NOTIFY changed)
    Q_PROPERTY(int switchKnob READ switchKnob NOTIFY changed)
    Q_PROPERTY(int tileHeight READ tileHeight NOTIFY changed)
    Q_PROPERTY(int tileWidth READ tileWidth NOTIFY changed)
    Q_PROPERTY(int edge READ edge CONSTANT)
    Q_PROPERTY(int cardPadding READ cardPadding CONSTANT)
    Q_PROPERTY(int clusterSpacing READ clusterSpacing CONSTANT)
    Q_PROPERTY(int clusterRadius READ clusterRadius CONSTANT)
    Q_PROPERTY(int itemRadius READ itemRadius CONSTANT)
    Q_PROPERTY(int fieldRadius READ fieldRadius CONSTANT)
    Q_PROPERTY(int buttonRadius READ buttonRadius CONSTANT)
    Q_PROPERTY(int runRadius READ runRadius CONSTANT)
    Q_PROPERTY(int progressRadius READ runRadius CONSTANT)
    Q_PROPERTY(int cardRadius READ cardRadius CONSTANT)
    Q_PROPERTY(int groupRadius READ groupRadius CONSTANT)
    Q_PROPERTY(int segmentsRadius READ segmentsRadius CONSTANT)
    Q_PROPERTY(int segmentRadius READ segmentRadius CONSTANT)
    Q_PROPERTY(int keyCapRadius READ keyCapRadius CONSTANT)
    Q_PROPERTY(int tileRadius READ groupRadius CONSTANT)
    Q_PROPERTY(int helpDelay READ helpDelay CONSTANT)

public:
    /// The one of the process. Main thread only.
    static Theme& shared();
    /// For the engine: the same one.
    static Theme* create(QQmlEngine* engine, QJSEngine* scripts);

    bool isDark() const { return dark_; }
    void setDark(bool dark);
    /// How much larger than Brand's sizes the desktop wants text; kept within 0.5 and 3.
    qreal textScale() const { return textScale_; }
    void setTextScale(qreal scale);
    /// Whether the desktop asks for no motion.
    bool reducedMotion() const { return reducedMotion_; }
    void setReducedMotion(bool reduced);

    /// A movement's time in milliseconds: none with reduced motion.
    Q_INVOKABLE int duration(int milliseconds) const { return reducedMotion_ ? 0 : milliseconds; }
    /// 1, or 0 with reduced motion.
    int motion() const { return reducedMotion_ ? 0 : 1; }
    /// How much lengths grow with the text; they never shrink.
    qreal lengthScale() const { return textScale_ > 1 ? textScale_ : 1; }
    /// A length of the design in points, grown with the text.
    Q_INVOKABLE int length(int points) const;
    /// A line's width in points that covers whole device pixels, at least one.
    Q_INVOKABLE qreal line(qreal points, qreal devicePixelRatio) const;
    /// The thinnest line of a screen in points: one device pixel.
    Q_INVOKABLE qreal hairline(qreal devicePixelRatio) const { return line(0, devicePixelRatio); }
    /// What is seen where `top` lies over `under`.
    Q_INVOKABLE QColor over(const QColor& under, const QColor& top) const;

    QColor color(const Brand::Color& color) const;
    static QColor darkColor(const Brand::Color& color);
    /// A style of type at the present size of text; `tabular` for digits of one width.
    QFont font(const Brand::Typeface& typeface, bool tabular = false) const;

    QColor surfaceBase() const { return color(Brand::surfaceBase); }
    QColor surfaceRaised() const { return color(Brand::surfaceRaised); }
    QColor surfaceSunken() const { return color(Brand::surfaceSunken); }
    QColor textPrimary() const { return color(Brand::textPrimary); }
    QColor textSecondary() const { return color(Brand::textSecondary); }
    QColor textTertiary() const { return color(Brand::textTertiary); }
    QColor textDisabled() const { return color(Brand::textDisabled); }
    QColor accentPrimary() const { return color(Brand::accentPrimary); }
    QColor accentPressed() const { return color(Brand::accentPressed); }
    QColor accentOn() const { return color(Brand::accentOn); }
    QColor accentSubtle() const { return color(Brand::accentSubtle); }
    QColor statusSuccess() const { return color(Brand::statusSuccess); }
    QColor statusWarning() const { return color(Brand::statusWarning); }
    QColor statusError() const { return color(Brand::statusError); }
    QColor statusInfo() const { return color(Brand::statusInfo); }
    QColor borderSubtle() const { return color(Brand::borderSubtle); }
    QColor borderStrong() const { return color(Brand::borderStrong); }
    QColor floatingShadow() const;

    /// Straight on the viewport, which is dark in both appearances.
    QColor sceneBase() const { return darkColor(Brand::surfaceBase); }
    QColor sceneText() const { return darkColor(Brand::textPrimary); }
    QColor sceneTextTertiary() const { return darkColor(Brand::textTertiary); }
    QColor sceneAccent() const { return darkColor(Brand::accentPrimary); }
    QColor sceneError() const { return darkColor(Brand::statusError); }

    /// Over a flat item that the pointer is on, or that is held down.
    QColor washHover() const;
    QColor washPressed() const;
    /// Within a framed button.
    QColor buttonFill() const;
    QColor buttonHover() const;
    QColor buttonPressed() const;
    QColor destructiveHover() const;
    /// An accent button that the pointer is on.
    QColor accentHover() const;
    /// Within a field: sunken in dark, white in light, where sunken would read as disabled.
    QColor fieldFill() const;
    /// Of the segment that is chosen.
    QColor segmentFill() const;
    QColor keyCapOnAccent() const;
    /// Over a progress bar's track, from its start.
    QColor progressFill() const;

    QFont label() const { return font(Brand::Typeface::label); }
    /// `label` with the spacing of capitals.
    QFont sectionLabel() const;
    QFont monoSmall() const { return font(Brand::Typeface::monoSmall); }
    QFont mono() const { return font(Brand::Typeface::mono); }
    QFont monoSemibold() const;
    /// Of segments: between caption and body.
    QFont segment() const;
    /// Of key caps: `label` without its weight.
    QFont keys() const;
    QFont caption() const { return font(Brand::Typeface::caption); }
    QFont body() const { return font(Brand::Typeface::body); }
    QFont bodyMedium() const { return font(Brand::Typeface::bodyMedium); }
    QFont hero() const { return font(Brand::Typeface::hero); }
    QFont title() const { return font(Brand::Typeface::title); }
    QFont display() const { return font(Brand::Typeface::display); }
    QFont captionNumbers() const { return font(Brand::Typeface::caption, true); }
    QFont bodyNumbers() const { return font(Brand::Typeface::body, true); }
    QFont bodyMediumNumbers() const { return font(Brand::Typeface::bodyMedium, true); }

    int toolbarHeight() const { return length(56); }
    int clusterHeight() const { return length(44); }
    int itemHeight() const { return clusterHeight() - 4; }
    int statusBarHeight() const { return length(26); }
    int panelHeaderHeight() const { return length(40); }
    int rowHeight() const { return length(32); }
    int fieldHeight() const { return length(24); }
    int buttonHeight() const { return length(28); }
    int runHeight() const { return length(40); }
    int progressHeight() const { return length(44); }
    int cardHeadHeight() const { return length(36); }
    int cardRowHeight() const { return length(24); }
    int settingsRowHeight() const { return length(38); }
    int aboutRowHeight() const { return length(34); }
    int segmentsHeight() const { return length(26); }
    int segmentHeight() const { return segmentsHeight() - 4; }
    int chipHeight() const { return length(20); }
    int keyCapHeight() const { return length(18); }
    int switchHeight() const { return length(18); }
    int switchWidth() const { return length(32); }
    int switchKnob() const { return switchHeight() - 4; }
    int tileHeight() const { return length(112); }
    int tileWidth() const { return length(136); }
    int edge() const { return 16; }
    int cardPadding() const { return 12; }
    int clusterSpacing() const { return 12; }
    int clusterRadius() const { return 10; }
    int itemRadius() const { return 8; }
    int fieldRadius() const { return 6; }
    int buttonRadius() const { return 7; }
    int runRadius() const { return 10; }
    int cardRadius() const { return 12; }
    int groupRadius() const { return 10; }
    int segmentsRadius() const { return 7; }
    int segmentRadius() const { return 5; }
    int keyCapRadius() const { return 4; }
    /// How long the pointer rests on a control before its help comes up, in milliseconds.
    int helpDelay() const { return 700; }

Q_SIGNALS:
    void changed();

private:
    Theme();

    bool dark_ = true;
    qreal textScale_ = 1;
    bool reducedMotion_ = false;
};

} // namespace ostrella

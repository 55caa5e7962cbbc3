#pragma once

#include <QObject>

#include <string_view>

namespace ostrella {

class PreferenceStore;

/// The four values that outlive the process. Each set is written through to the preferences. Main
/// thread only.
class AppSettings : public QObject {
    Q_OBJECT
    Q_PROPERTY(int defaultMaxIterations READ defaultMaxIterations WRITE setDefaultMaxIterations
            NOTIFY defaultMaxIterationsChanged)
    Q_PROPERTY(double streamlineUpstreamFactor READ streamlineUpstreamFactor WRITE
            setStreamlineUpstreamFactor NOTIFY streamlineUpstreamFactorChanged)
    Q_PROPERTY(double streamlineDownstreamFactor READ streamlineDownstreamFactor WRITE
            setStreamlineDownstreamFactor NOTIFY streamlineDownstreamFactorChanged)
    Q_PROPERTY(int streamlineSeedCount READ streamlineSeedCount WRITE setStreamlineSeedCount NOTIFY
            streamlineSeedCountChanged)

public:
    static constexpr std::string_view maxIterationsKey = "Ostrella.defaultMaxIterations";
    static constexpr std::string_view upstreamFactorKey = "Ostrella.streamlineUpstreamFactor";
    static constexpr std::string_view downstreamFactorKey = "Ostrella.streamlineDownstreamFactor";
    static constexpr std::string_view seedCountKey = "Ostrella.streamlineSeedCount";

    /// Reads the stored values; a missing one, or one of another type, is the default. Nothing is
    /// written back, and no value is held to a range. The store must outlive the object.
    explicit AppSettings(PreferenceStore& store, QObject* parent = nullptr);

    int defaultMaxIterations() const { return defaultMaxIterations_; }
    double streamlineUpstreamFactor() const { return streamlineUpstreamFactor_; }
    double streamlineDownstreamFactor() const { return streamlineDownstreamFactor_; }
    int streamlineSeedCount() const { return streamlineSeedCount_; }

    void setDefaultMaxIterations(int value);
    void setStreamlineUpstreamFactor(double value);
    void setStreamlineDownstreamFactor(double value);
    void setStreamlineSeedCount(int value);

    /// "Restore defaults" of the settings window's tabs.
    void restoreSolverDefaults();
    void restoreStreamlineDefaults();

Q_SIGNALS:
    void defaultMaxIterationsChanged();
    void streamlineUpstreamFactorChanged();
    void streamlineDownstreamFactorChanged();
    void streamlineSeedCountChanged();

private:
    PreferenceStore& store_;
    int defaultMaxIterations_;
    double streamlineUpstreamFactor_;
    double streamlineDownstreamFactor_;
    int streamlineSeedCount_;
};

} // namespace ostrella

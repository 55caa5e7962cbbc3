#include "../PanelBench.h"
#include "Models/MainThread.h"
#include "Views/Controls/Theme.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QImage>
#include <QQmlEngine>
#include <QQuickView>
#include <QTimer>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <vector>

namespace ostrella {
void useControlsModule();
void usePanelModule();
} // namespace ostrella

namespace ostrella::test {
namespace {

using Level = LogStore::Level;

double processorSeconds() {
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

class Pictures {
public:
    explicit Pictures(int width) {
        useControlsModule();
        usePanelModule();
        view.engine()->addImportPath(QStringLiteral(":/qt/qml"));
        view.setResizeMode(QQuickView::SizeRootObjectToView);
        view.resize(width, Theme::shared().length(228));
        view.setInitialProperties(
            {{QStringLiteral("model"), QVariant::fromValue<QObject*>(&bench.panel)}});
        view.setSource(QUrl(QStringLiteral("qrc:/qt/qml/Ostrella/Panel/BottomPanel.qml")));
        view.show();
    }

    void save(const QString& folder, const char* state) {
        bench.panel.lines()->takeIn();
        for (const bool dark : {true, false}) {
            Theme::shared().setDark(dark);
            QElapsedTimer time;
            for (time.start(); time.elapsed() < 300;) {
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
            }
            const QString name = QStringLiteral("%1/%2-%3.png")
                                     .arg(folder, QString::fromLatin1(state),
                                         QString::fromLatin1(dark ? "dark" : "light"));
            std::printf("%s %d\n", qPrintable(name), view.grabWindow().save(name) ? 1 : 0);
        }
    }

    void all(const QString& folder) {
        bench.log("All convergence criteria satisfied.", Level::su2);
        bench.log("SU2_CFD finished in 23.7 s", Level::info);
        bench.log("Surface: 2562 points, 7680 primitives, Cp ∈ [-0.718, 1.075]", Level::ok);
        bench.log("y⁺ on body: min 0.62 · mean 9.14 · p95 17.3 · max 24.88", Level::info);
        bench.log("Wall mesh marginal for y⁺ ≤ 5 (SA, low-Re) · p95 y⁺ = 17.3. Results are "
                  "indicative; the boundary layer is in the transition band.",
            Level::warn);
        bench.log("Volume: 9227 points parsed in 0.1 s", Level::info);
        bench.log("Generating streamlines…", Level::info);
        bench.log("Streamlines: 100 seeds → 37814 segments in 0.21 s, |V| ∈ [13.19, 56.50] m/s",
            Level::ok);
        bench.log("Converged at iter 187 · CL -0.0013 · CD 0.5686 · 23.7 s", Level::ok);
        save(folder, "log");
        bench.log("Mesh failed · gmsh produced a mesh with no volume cells; the surface is "
                  "probably not closed",
            Level::error);
        bench.panel.showLog(Level::error);
        save(folder, "errors");
        bench.panel.setFilter(LogFilter::all);
        bench.log("A line that goes on and on: " + std::string(220, 'o') + " and on, " +
                      std::string(40, 'x') + " until it has wrapped",
            Level::warn);
        save(folder, "wrapped");
        bench.panel.chooseTab(1);
        save(folder, "empty");
        curves(118);
        bench.setPhase(RunPhase::solving());
        save(folder, "charts");
        curves(50'000);
        save(folder, "charts-50000");
    }

    void curves(int rows) {
        HistoryStore::Points residuals;
        HistoryStore::Points coefficients;
        const auto noise = [](int i, int series) { return std::sin(i * 12.9898 + series * 78.2); };
        for (int i = 0; i < rows; ++i) {
            const double t = i / static_cast<double>(std::max(rows, 118));
            const char* names[]{"P", "U", "V", "W", "nu"};
            const double starts[]{-2.5, -0.2, -1.2, -0.9, -7};
            const double falls[]{1.3, 1.3, 0.6, 0.7, -0.3};
            for (int s = 0; s < 5; ++s) {
                residuals.push_back({names[s], i,
                    starts[s] - falls[s] * t + 0.15 * std::sin(25 * t + s) +
                        (rows > 1000 ? 0.2 * noise(i, s) : 0)});
            }
            const double swing = std::exp(-4 * t) * std::cos(22 * t);
            coefficients.push_back({"CD", i, 0.0388 + 0.28 * swing});
            coefficients.push_back({"CL", i, 0.1687 + 0.58 * swing});
            coefficients.push_back({"Cm", i, 0.0454 + 0.05 * std::sin(14 * t) * std::exp(-3 * t)});
        }
        bench.app.historyStore.setResiduals(std::move(residuals));
        bench.app.historyStore.setCoefficients(std::move(coefficients));
        bench.app.historyStore.setResidualLabels({"P", "U", "V", "W", "nu"});
        bench.app.historyStore.setCoefficientLabels({"CD", "CL", "Cm"});
        bench.app.historyStore.setHasData(true);
    }

    /// A million lines, then 2000 more a second, one by one as they come, for so many seconds.
    void frames(double seconds) {
        const std::string text =
            " 118|  -3.731204|  -1.552310|  -1.640081|   0.168714|   0.038801|";
        for (int i = 0; i < 1'000'000; ++i) {
            bench.log(text, Level::su2);
        }
        bench.panel.lines()->takeIn();
        int frames = 0;
        int longest = 0;
        QElapsedTimer sinceFrame;
        QObject::connect(&view, &QQuickWindow::frameSwapped, &view, [&] {
            ++frames;
            longest = std::max(longest, static_cast<int>(sinceFrame.restart()));
        });
        QElapsedTimer time;
        QTimer source;
        int sent = 0;
        source.setTimerType(Qt::PreciseTimer);
        QObject::connect(&source, &QTimer::timeout, &view, [&] {
            const auto due = static_cast<int>(time.elapsed() * 2);
            for (; sent < due; ++sent) {
                bench.log(text, Level::su2);
            }
        });
        QTimer::singleShot(1000, &view, [&] {
            frames = longest = 0;
            time.start();
            sinceFrame.start();
            source.start(2);
        });
        const auto wait = [](int ms) {
            QElapsedTimer elapsed;
            for (elapsed.start(); elapsed.elapsed() < ms;) {
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 5);
            }
        };
        wait(1100);
        const double cpu = processorSeconds();
        wait(static_cast<int>(seconds * 1000));
        const double elapsed = static_cast<double>(time.elapsed()) / 1000;
        std::printf("lines sent %d in %.1f s (%.0f/s), frames %d (%.1f/s), longest %d ms, "
                    "processor %.0f %%, following %d\n",
            sent, elapsed, sent / elapsed, frames, frames / elapsed, longest,
            100 * (processorSeconds() - cpu) / seconds, bench.panel.isFollowingLog() ? 1 : 0);
    }

    PanelBench bench;
    QQuickView view;
};

} // namespace
} // namespace ostrella::test

int main(int argc, char** argv) {
    qputenv("QSG_RENDER_LOOP", "basic");
    QGuiApplication application(argc, argv);
    const ostrella::MainThread mainThread;
    if (argc == 3 && std::strcmp(argv[1], "frames") == 0) {
        ostrella::test::Pictures(1119).frames(std::atof(argv[2]));
    } else if (argc >= 3) {
        if (argc > 3) {
            ostrella::Theme::shared().setTextScale(std::atof(argv[3]));
        }
        ostrella::test::Pictures(1119).all(QString::fromLocal8Bit(argv[2]));
    }
    return 0;
}

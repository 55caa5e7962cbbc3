#include "Platform/DesktopAppearance.h"

#include "Models/MainThread.h"

#include <QPointer>

#import <AppKit/AppKit.h>

#include <utility>

namespace {

using Changed = std::function<void()>;

} // namespace

/// Watches the application's effective appearance, which follows the system's and the application's
/// own choice, and the accessibility options.
@interface OstrellaAppearanceObserver : NSObject
- (instancetype)initWithChanged:(Changed)changed;
- (void)stop;
@end

@implementation OstrellaAppearanceObserver {
    Changed _changed;
}

- (instancetype)initWithChanged:(Changed)changed {
    self = [super init];
    if (self) {
        _changed = std::move(changed);
        [NSApplication.sharedApplication addObserver:self
                                          forKeyPath:@"effectiveAppearance"
                                             options:0
                                             context:nullptr];
        [NSWorkspace.sharedWorkspace.notificationCenter
            addObserver:self
               selector:@selector(optionsChanged:)
                   name:NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification
                 object:nil];
    }
    return self;
}

- (void)stop {
    [NSApplication.sharedApplication removeObserver:self forKeyPath:@"effectiveAppearance"];
    [NSWorkspace.sharedWorkspace.notificationCenter removeObserver:self];
    _changed = nullptr;
}

- (void)observeValueForKeyPath:(NSString*)keyPath
                      ofObject:(id)object
                        change:(NSDictionary<NSKeyValueChangeKey, id>*)change
                       context:(void*)context {
    if (_changed) {
        _changed();
    }
}

- (void)optionsChanged:(NSNotification*)notification {
    if (_changed) {
        _changed();
    }
}

@end

namespace ostrella {

namespace {

DesktopAppearance::Values present() {
    DesktopAppearance::Values values;
    NSAppearanceName best = [NSApplication.sharedApplication.effectiveAppearance
        bestMatchFromAppearancesWithNames:@[ NSAppearanceNameAqua, NSAppearanceNameDarkAqua ]];
    values.isDark = [best isEqualToString:NSAppearanceNameDarkAqua];
    values.prefersReducedMotion =
        NSWorkspace.sharedWorkspace.accessibilityDisplayShouldReduceMotion;
    return values;
}

class AppearanceFollower final : public QObject {
public:
    explicit AppearanceFollower(std::function<void(const DesktopAppearance::Values&)> accept) {
        accept(present());
        observer_ = [[OstrellaAppearanceObserver alloc]
            initWithChanged:[self = QPointer<AppearanceFollower>(this), accept] {
                // The notice may come on another thread.
                MainThread::post([self, accept] {
                    if (self) {
                        accept(present());
                    }
                });
            }];
    }

    ~AppearanceFollower() override { [observer_ stop]; }

private:
    OstrellaAppearanceObserver* observer_;
};

} // namespace

std::unique_ptr<QObject> DesktopAppearance::follow(Accept accept) {
    return std::make_unique<AppearanceFollower>(std::move(accept));
}

} // namespace ostrella

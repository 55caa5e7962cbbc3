#include "Platform/TaskBarProgress.h"

#import <AppKit/AppKit.h>

namespace ostrella {

/// The icon of the application with a bar across its foot.
class TaskBarProgress::Bar {
public:
    void show(double fraction) {
        NSDockTile* tile = NSApplication.sharedApplication.dockTile;
        if (!indicator_) {
            const NSRect whole = NSMakeRect(0, 0, tile.size.width, tile.size.height);
            NSImageView* icon = [[NSImageView alloc] initWithFrame:whole];
            icon.image = NSApplication.sharedApplication.applicationIconImage;
            const CGFloat margin = whole.size.width / 12;
            indicator_ = [[NSProgressIndicator alloc]
                initWithFrame:NSMakeRect(margin, margin / 2, whole.size.width - 2 * margin, 20)];
            indicator_.style = NSProgressIndicatorStyleBar;
            indicator_.indeterminate = NO;
            indicator_.minValue = 0;
            indicator_.maxValue = 1;
            [icon addSubview:indicator_];
            tile.contentView = icon;
        }
        indicator_.doubleValue = fraction;
        [tile display];
    }

    void hide() {
        NSDockTile* tile = NSApplication.sharedApplication.dockTile;
        tile.contentView = nil;
        indicator_ = nil;
        [tile display];
    }

private:
    NSProgressIndicator* indicator_ = nil;
};

TaskBarProgress::TaskBarProgress(QObject* parent)
    : QObject(parent), bar_(std::make_unique<Bar>()) {}

TaskBarProgress::~TaskBarProgress() {
    set(std::nullopt);
}

void TaskBarProgress::show() {
    if (steps_) {
        bar_->show(static_cast<double>(*steps_) / stepCount);
    } else {
        bar_->hide();
    }
}

} // namespace ostrella

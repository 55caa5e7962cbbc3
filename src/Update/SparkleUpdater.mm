#include "Update/SparkleUpdater.h"

#include "Update/AppcastItem.h"
#include "Update/UpdaterDelegate.h"

#import <Foundation/Foundation.h>
#import <Sparkle/Sparkle.h>

namespace {

std::string textOf(NSString* text) {
    return text ? std::string(text.UTF8String) : std::string();
}

ostrella::AppcastItem itemOf(SUAppcastItem* item) {
    ostrella::AppcastItem copy;
    copy.version = textOf(item.versionString);
    copy.displayVersionString = textOf(item.displayVersionString);
    copy.title = textOf(item.title);
    copy.notes = textOf(item.itemDescription);
    copy.notesAddress = textOf(item.releaseNotesURL.absoluteString);
    copy.infoAddress = textOf(item.infoURL.absoluteString);
    copy.archiveAddress = textOf(item.fileURL.absoluteString);
    copy.archiveLength = static_cast<std::int64_t>(item.contentLength);
    return copy;
}

} // namespace

/// Hands on what the framework asks and tells, on the main thread as it does.
@interface OstrellaSparkleDelegate : NSObject <SPUUpdaterDelegate, SPUStandardUserDriverDelegate>
@property(nonatomic) ostrella::UpdaterDelegate* receiver;
@property(nonatomic, copy) void (^stateChanged)(NSString* key);
@end

@implementation OstrellaSparkleDelegate

- (void)updater:(SPUUpdater*)updater didFindValidUpdate:(SUAppcastItem*)item {
    if (self.receiver) {
        self.receiver->didFindValidUpdate(itemOf(item));
    }
}

- (BOOL)updater:(SPUUpdater*)updater
    shouldPostponeRelaunchForUpdate:(SUAppcastItem*)item
              untilInvokingBlock:(void (^)(void))installHandler {
    void (^const install)(void) = [installHandler copy];
    return self.receiver &&
           self.receiver->shouldPostponeRelaunch(itemOf(item), [install] { install(); });
}

- (BOOL)supportsGentleScheduledUpdateReminders {
    return self.receiver && self.receiver->supportsGentleScheduledUpdateReminders();
}

- (BOOL)standardUserDriverShouldHandleShowingScheduledUpdate:(SUAppcastItem*)update
                                          andInImmediateFocus:(BOOL)immediateFocus {
    return !self.receiver ||
           self.receiver->shouldHandleShowingScheduledUpdate(itemOf(update), immediateFocus);
}

- (void)standardUserDriverWillHandleShowingUpdate:(BOOL)handleShowingUpdate
                                        forUpdate:(SUAppcastItem*)update
                                            state:(SPUUserUpdateState*)state {
    if (self.receiver) {
        self.receiver->willHandleShowingUpdate(handleShowingUpdate, itemOf(update));
    }
}

- (void)standardUserDriverWillFinishUpdateSession {
    if (self.receiver) {
        self.receiver->willFinishUpdateSession();
    }
}

- (void)observeValueForKeyPath:(NSString*)keyPath
                      ofObject:(id)object
                        change:(NSDictionary<NSKeyValueChangeKey, id>*)change
                       context:(void*)context {
    if (self.stateChanged) {
        self.stateChanged(keyPath);
    }
}

@end

namespace ostrella {

namespace {

NSArray<NSString*>* observedKeys() {
    return @[ @"canCheckForUpdates", @"sessionInProgress", @"automaticallyChecksForUpdates" ];
}

class SparkleUpdater final : public Updater {
public:
    SparkleUpdater() {
        delegate_.stateChanged = ^(NSString* key) {
          if ([key isEqualToString:@"canCheckForUpdates"]) {
              Q_EMIT canCheckForUpdatesChanged();
          } else if ([key isEqualToString:@"sessionInProgress"]) {
              Q_EMIT sessionInProgressChanged();
          } else {
              Q_EMIT automaticallyChecksForUpdatesChanged();
          }
        };
        for (NSString* key in observedKeys()) {
            [updater() addObserver:delegate_ forKeyPath:key options:0 context:nullptr];
        }
    }

    ~SparkleUpdater() override {
        for (NSString* key in observedKeys()) {
            [updater() removeObserver:delegate_ forKeyPath:key];
        }
        delegate_.stateChanged = nil;
        delegate_.receiver = nullptr;
    }

    std::optional<std::string> startUpdater() override {
        NSError* error = nil;
        if ([updater() startUpdater:&error]) {
            return std::nullopt;
        }
        return textOf(error.localizedDescription);
    }

    void checkForUpdates() override { [updater() checkForUpdates]; }
    bool canCheckForUpdates() const override { return updater().canCheckForUpdates; }
    bool sessionInProgress() const override { return updater().sessionInProgress; }
    bool automaticallyChecksForUpdates() const override {
        return updater().automaticallyChecksForUpdates;
    }
    void setAutomaticallyChecksForUpdates(bool automatically) override {
        updater().automaticallyChecksForUpdates = automatically;
    }
    void setDelegate(UpdaterDelegate* delegate) override { delegate_.receiver = delegate; }

private:
    SPUUpdater* updater() const { return controller_.updater; }

    OstrellaSparkleDelegate* delegate_ = [[OstrellaSparkleDelegate alloc] init];
    SPUStandardUpdaterController* controller_ =
        [[SPUStandardUpdaterController alloc] initWithStartingUpdater:NO
                                                      updaterDelegate:delegate_
                                                   userDriverDelegate:delegate_];
};

} // namespace

std::unique_ptr<Updater> makeSparkleUpdater() {
    return std::make_unique<SparkleUpdater>();
}

} // namespace ostrella

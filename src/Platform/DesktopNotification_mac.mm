#include "Platform/DesktopNotification.h"

#include "Models/MainThread.h"

#include <QPointer>

#import <UserNotifications/UserNotifications.h>

#include <functional>
#include <utility>

namespace {

NSString* const noteIdentifier = @"org.ostrella.Ostrella.note";

} // namespace

/// Is told of clicks, and has notes shown while the application is in front as well.
@interface OstrellaNoteDelegate : NSObject <UNUserNotificationCenterDelegate>
- (instancetype)initWithActivated:(std::function<void()>)activated;
@end

@implementation OstrellaNoteDelegate {
    std::function<void()> _activated;
}

- (instancetype)initWithActivated:(std::function<void()>)activated {
    self = [super init];
    if (self) {
        _activated = std::move(activated);
    }
    return self;
}

- (void)userNotificationCenter:(UNUserNotificationCenter*)center
       willPresentNotification:(UNNotification*)notification
         withCompletionHandler:(void (^)(UNNotificationPresentationOptions))completionHandler {
    completionHandler(
        UNNotificationPresentationOptionBanner | UNNotificationPresentationOptionList);
}

- (void)userNotificationCenter:(UNUserNotificationCenter*)center
    didReceiveNotificationResponse:(UNNotificationResponse*)response
             withCompletionHandler:(void (^)(void))completionHandler {
    if ([response.actionIdentifier isEqualToString:UNNotificationDefaultActionIdentifier]) {
        _activated();
    }
    completionHandler();
}

@end

namespace ostrella {

namespace {

/// None for a program outside of an application's package, for which asking would be fatal.
UNUserNotificationCenter* center() {
    return NSBundle.mainBundle.bundleIdentifier ? UNUserNotificationCenter.currentNotificationCenter
                                                : nil;
}

} // namespace

class DesktopNotification::Desk {
public:
    explicit Desk(DesktopNotification& owner) {
        delegate_ = [[OstrellaNoteDelegate alloc]
            initWithActivated:[note = QPointer<DesktopNotification>(&owner)] {
                // The click may be told on another thread.
                MainThread::post([note] {
                    if (note) {
                        Q_EMIT note->activated(QString());
                    }
                });
            }];
        center().delegate = delegate_;
    }

    ~Desk() {
        if (center().delegate == delegate_) {
            center().delegate = nil;
        }
    }

    void show(const std::string& title, const std::string& body) {
        UNMutableNotificationContent* content = [[UNMutableNotificationContent alloc] init];
        content.title = @(title.c_str());
        content.body = @(body.c_str());
        UNNotificationRequest* request = [UNNotificationRequest requestWithIdentifier:noteIdentifier
                                                                              content:content
                                                                              trigger:nil];
        // The system asks the user at the first note alone.
        UNUserNotificationCenter* notes = center();
        [notes requestAuthorizationWithOptions:UNAuthorizationOptionAlert
                             completionHandler:^(BOOL granted, NSError*) {
                               if (granted) {
                                   [notes addNotificationRequest:request withCompletionHandler:nil];
                               }
                             }];
    }

    void withdraw() {
        NSArray<NSString*>* identifiers = @[ noteIdentifier ];
        [center() removePendingNotificationRequestsWithIdentifiers:identifiers];
        [center() removeDeliveredNotificationsWithIdentifiers:identifiers];
    }

private:
    OstrellaNoteDelegate* delegate_;
};

DesktopNotification::DesktopNotification(QObject* parent)
    : QObject(parent), desk_(std::make_unique<Desk>(*this)) {}

DesktopNotification::~DesktopNotification() = default;

void DesktopNotification::show(const std::string& title, const std::string& body) {
    desk_->show(title, body);
}

void DesktopNotification::withdraw() {
    desk_->withdraw();
}

} // namespace ostrella

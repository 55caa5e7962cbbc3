#include "Models/Cancellation.h"

#include <gtest/gtest.h>

#include <memory>
#include <thread>

namespace ostrella {
namespace {

TEST(CancellationToken, isNeverCancelledByDefault) {
    const CancellationToken token;
    int count = 0;
    const auto registration = token.onCancel([&] { ++count; });
    EXPECT_FALSE(token.isCancelled());
    EXPECT_NO_THROW(token.throwIfCancelled());
    EXPECT_EQ(count, 0);
}

TEST(CancellationToken, seesTheCancellationOfItsSource) {
    const CancellationSource source;
    const CancellationToken token = source.token();
    const CancellationToken copy = token;
    EXPECT_FALSE(token.isCancelled());
    EXPECT_NO_THROW(token.throwIfCancelled());
    source.cancel();
    EXPECT_TRUE(source.isCancelled());
    EXPECT_TRUE(token.isCancelled());
    EXPECT_TRUE(copy.isCancelled());
    EXPECT_THROW(token.throwIfCancelled(), CancellationError);
}

TEST(CancellationToken, outlivesItsSource) {
    CancellationToken token;
    {
        const CancellationSource source;
        token = source.token();
        source.cancel();
    }
    EXPECT_TRUE(token.isCancelled());
}

TEST(CancellationSource, isSharedByItsCopies) {
    const CancellationSource source;
    const CancellationSource copy = source; // NOLINT(performance-unnecessary-copy-initialization)
    copy.cancel();
    EXPECT_TRUE(source.token().isCancelled());
}

TEST(CancellationCallback, isCalledOnceOnTheCancellingThread) {
    const CancellationSource source;
    int count = 0;
    std::thread::id caller;
    const auto registration = source.token().onCancel([&] {
        ++count;
        caller = std::this_thread::get_id();
    });
    std::thread::id canceller;
    std::thread([&] {
        canceller = std::this_thread::get_id();
        source.cancel();
        source.cancel();
    }).join();
    EXPECT_EQ(count, 1);
    EXPECT_EQ(caller, canceller);
}

TEST(CancellationCallback, isCalledAtOnceAfterTheCancellation) {
    const CancellationSource source;
    source.cancel();
    int count = 0;
    const auto registration = source.token().onCancel([&] { ++count; });
    EXPECT_EQ(count, 1);
}

TEST(CancellationCallback, isWithdrawnWithItsRegistration) {
    const CancellationSource source;
    int count = 0;
    {
        const auto registration = source.token().onCancel([&] { ++count; });
    }
    source.cancel();
    EXPECT_EQ(count, 0);
}

TEST(CancellationCallback, staysRegisteredWhenItsRegistrationMoves) {
    const CancellationSource source;
    int count = 0;
    CancellationRegistration holder;
    {
        auto registration = source.token().onCancel([&] { ++count; });
        holder = std::move(registration);
    }
    source.cancel();
    EXPECT_EQ(count, 1);
}

TEST(CancellationCallback, isWithdrawnByAnotherAssignment) {
    const CancellationSource source;
    int count = 0;
    auto registration = source.token().onCancel([&] { ++count; });
    registration = CancellationRegistration();
    source.cancel();
    EXPECT_EQ(count, 0);
}

TEST(CancellationCallback, mayLookAtTheTokenAndEndItsOwnRegistration) {
    const CancellationSource source;
    bool seen = false;
    auto registration = std::make_unique<CancellationRegistration>();
    *registration = source.token().onCancel([&, token = source.token()] {
        seen = token.isCancelled();
        registration.reset();
    });
    source.cancel();
    EXPECT_TRUE(seen);
}

TEST(CancellationRegistration, mayOutliveTheSource) {
    const auto held = std::make_shared<int>(1);
    CancellationRegistration registration;
    {
        const CancellationSource source;
        registration = source.token().onCancel([held] {});
        EXPECT_EQ(held.use_count(), 2);
    }
    EXPECT_EQ(held.use_count(), 1) << "the callback has outlived what it was registered with";
    registration = CancellationRegistration();
}

TEST(CancellationError, saysWhatItIs) {
    EXPECT_STREQ(CancellationError().what(), "The operation was cancelled.");
}

} // namespace
} // namespace ostrella

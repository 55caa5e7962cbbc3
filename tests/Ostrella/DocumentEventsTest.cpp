#include "Views/DocumentEvents.h"

#include <QCoreApplication>
#include <QFileOpenEvent>

#include <gtest/gtest.h>

namespace ostrella {
namespace {

TEST(DocumentEvents, HandsTheDocumentOver) {
    DocumentEvents events;
    std::vector<QUrl> documents;
    QObject::connect(&events, &DocumentEvents::handedOver,
        [&documents](const QUrl& document) { documents.push_back(document); });
    QFileOpenEvent event(QUrl::fromLocalFile(QStringLiteral("/models/my wing.stl")));
    EXPECT_TRUE(QCoreApplication::sendEvent(QCoreApplication::instance(), &event));
    ASSERT_EQ(documents.size(), 1U);
    EXPECT_EQ(documents[0].toLocalFile(), QStringLiteral("/models/my wing.stl"));
}

TEST(DocumentEvents, OnlyWhatComesToTheApplicationAndIsADocument) {
    DocumentEvents events;
    int count = 0;
    QObject::connect(&events, &DocumentEvents::handedOver, [&count] { ++count; });
    QObject other;
    QFileOpenEvent elsewhere(QUrl::fromLocalFile(QStringLiteral("/models/wing.stl")));
    QCoreApplication::sendEvent(&other, &elsewhere);
    QEvent another(QEvent::User);
    QCoreApplication::sendEvent(QCoreApplication::instance(), &another);
    EXPECT_EQ(count, 0);
}

} // namespace
} // namespace ostrella

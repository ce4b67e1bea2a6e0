// Every QML file of every module compiled into the windows loads, is shown in a real window and draws a
// frame without a single warning (QTest::failOnWarning armed for any message).
#include "DashboardViewModels.h"
#include "QmlViewHarness.h"
#include "ReviewViewModels.h"
#include "ShellViewModels.h"

#include <gtest/gtest.h>

#include <QDirIterator>
#include <QFileInfo>
#include <QObject>
#include <QQuickItem>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

#include <string>
#include <vector>

namespace kestrum::test {
namespace {

// The properties a file needs to be made at all (its required properties): the review views bind to the
// review objects of a short recording, the review window's to a controller on fakes, the shell's views to
// the shell's models over fakes, each made once for the whole run (the style's files need none).
QVariantMap initialProperties(const QString& resourcePath) {
    if (resourcePath.contains(QLatin1String("/Dashboard/"))) {
        static auto* dashboard = new DashboardViewModels();  // lives to the end of the run, with the windows
        return dashboard->propertiesFor(resourcePath);
    }
    static auto* shellModels = new ShellViewModels();  // likewise
    if (resourcePath.contains(QLatin1String("/Kestrum/Shell/")))
        return shellModels->propertiesFor(resourcePath);
    static auto* models = new ReviewViewModels();  // likewise
    return models->propertiesFor(resourcePath);
}

// Resource paths, as plain strings so that GoogleTest prints them.
std::vector<std::string> compiledQmlFiles() {
    QStringList files;
    QDirIterator resources(QStringLiteral(":/qt/qml/Kestrum"), {QStringLiteral("*.qml")}, QDir::Files,
                           QDirIterator::Subdirectories);
    while (resources.hasNext()) files.append(resources.next());
    files.sort();
    std::vector<std::string> paths;
    for (const QString& file : files) paths.push_back(file.toStdString());
    return paths;
}

// Runs under QTest::qExec, so that QTest::failOnWarning fails it on any warning.
class QmlFileLoadCheck : public QObject {
    Q_OBJECT

  public:
    explicit QmlFileLoadCheck(QString resourcePath) : resourcePath_(std::move(resourcePath)) {}

  private slots:
    void loadsWithoutWarning() {
        QTest::failOnWarning(QRegularExpression(QStringLiteral(".")));
        QmlViewHarness harness;
        QQuickItem* view =
            harness.show(QUrl(QStringLiteral("qrc") + resourcePath_), initialProperties(resourcePath_));
        QVERIFY2(view, qPrintable(harness.errors()));
        QVERIFY(!harness.screenshot().isNull());
    }

  private:
    QString resourcePath_;
};

class QmlFiles : public ::testing::TestWithParam<std::string> {};

TEST_P(QmlFiles, LoadWithoutWarning) {
    KESTRUM_REQUIRE_DISPLAY();
    QmlFileLoadCheck check(QString::fromStdString(GetParam()));
    EXPECT_EQ(QTest::qExec(&check, {QStringLiteral("ui-test")}), 0) << GetParam();
}

INSTANTIATE_TEST_SUITE_P(Modules, QmlFiles, ::testing::ValuesIn(compiledQmlFiles()),
                         [](const ::testing::TestParamInfo<std::string>& info) {
                             const QFileInfo file(QString::fromStdString(info.param));
                             return file.dir().dirName().toStdString() + "_" + file.baseName().toStdString();
                         });

TEST(QmlModules, EveryQmlFileOfTheWindowsIsCompiledIn) {
    // A file left out of its module's list would never be loaded, linted or tested.
    QSet<QString> compiled;
    for (const std::string& file : compiledQmlFiles())
        compiled.insert(QFileInfo(QString::fromStdString(file)).fileName());
    ASSERT_FALSE(compiled.isEmpty()) << "no module's resources are linked in";
    QDirIterator sources(QStringLiteral(KESTRUM_SOURCE_DIR "/src/ui"), {QStringLiteral("*.qml")}, QDir::Files,
                         QDirIterator::Subdirectories);
    int count = 0;
    while (sources.hasNext()) {
        const QString source = sources.next();
        ++count;
        EXPECT_TRUE(compiled.contains(QFileInfo(source).fileName())) << source.toStdString();
    }
    EXPECT_GT(count, 0);
}

}  // namespace
}  // namespace kestrum::test

#include "QmlFilesLoadTest.moc"

#include "core/settings/UserDefaults.h"

#include "base/log/CaptureLog.h"
#include "base/log/CaptureLogFile.h"
#include "support/TestEnvironment.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QThread>

#include <cmath>
#include <limits>
#include <optional>
#include <thread>
#include <vector>

namespace {

using kestrum::UserDefaultsValue;
using Store = kestrum::UserDefaults;

constexpr qint64 kMax = std::numeric_limits<qint64>::max();
constexpr qint64 kMin = std::numeric_limits<qint64>::min();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

UserDefaultsValue text(const char* s) {
    return UserDefaultsValue(QString::fromUtf8(s));
}

// Each test gets a private folder for its defaults file and an empty capture log.
class UserDefaults : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(folder_.isValid());
        kestrum::waitForCaptureLogWrites();
        QFile::remove(kestrum::captureLogFilePath());
    }

    QString path() const { return folder_.filePath(QStringLiteral("Kestrum/defaults.json")); }

    static QStringList captureLogLines() {
        kestrum::waitForCaptureLogWrites();
        return QString::fromUtf8(kestrum::test::readFileBytes(kestrum::captureLogFilePath()))
            .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }

    QTemporaryDir folder_;
};

TEST_F(UserDefaults, TypedGettersConvertByThePlatformRules) {
    struct Case {
        const char* name;
        std::optional<UserDefaultsValue> stored;
        bool asBool;
        qint64 asInteger;
        double asDouble;
        std::optional<QString> asString;
    };
    const std::vector<Case> cases = {
        {"missing", std::nullopt, false, 0, 0.0, std::nullopt},
        {"Boolean true", UserDefaultsValue(true), true, 1, 1.0, QStringLiteral("1")},
        {"integer 0", UserDefaultsValue(qint64{0}), false, 0, 0.0, QStringLiteral("0")},
        {"integer -7", UserDefaultsValue(qint64{-7}), true, -7, -7.0, QStringLiteral("-7")},
        {"double 1.0", UserDefaultsValue(1.0), true, 1, 1.0, QStringLiteral("1")},
        {"double -2.9 truncates", UserDefaultsValue(-2.9), true, -2, -2.9, QStringLiteral("-2.9")},
        {"double 0.5 is true, integer 0", UserDefaultsValue(0.5), true, 0, 0.5, QStringLiteral("0.5")},
        {"double beyond 64 bits", UserDefaultsValue(-1e300), true, kMin, -1e300, QStringLiteral("-1e+300")},
        {"NaN", UserDefaultsValue(kNaN), true, 0, kNaN, QStringLiteral("nan")},
        {"text YES", text("YES"), true, 0, 0.0, QStringLiteral("YES")},
        {"text False", text("False"), false, 0, 0.0, QStringLiteral("False")},
        {"text 0", text("0"), false, 0, 0.0, QStringLiteral("0")},
        {"leading integer", text(" -42px"), true, -42, -42.0, QStringLiteral(" -42px")},
        {"text 0.5 is false by its integer", text("0.5"), false, 0, 0.5, QStringLiteral("0.5")},
        {"exponent", text("2.5e3x"), true, 2, 2500.0, QStringLiteral("2.5e3x")},
        {"no number", text("abc"), false, 0, 0.0, QStringLiteral("abc")},
        {"integer text beyond 64 bits", text("99999999999999999999"), true, kMax, 1e20,
         QStringLiteral("99999999999999999999")},
        {"exponent beyond double", text("1e999"), true, 1, kInfinity, QStringLiteral("1e999")},
        {"string list", UserDefaultsValue(QStringList{QStringLiteral("1")}), false, 0, 0.0, std::nullopt},
        {"data", UserDefaultsValue(QByteArray("1")), false, 0, 0.0, std::nullopt},
    };
    Store defaults(path());
    const QString key = QStringLiteral("value");
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        if (c.stored) {
            defaults.setObject(*c.stored, key);
        } else {
            defaults.removeObjectForKey(key);
        }
        EXPECT_EQ(defaults.boolForKey(key), c.asBool);
        EXPECT_EQ(defaults.integerForKey(key), c.asInteger);
        EXPECT_THAT(defaults.doubleForKey(key), testing::NanSensitiveDoubleEq(c.asDouble));
        EXPECT_EQ(defaults.stringForKey(key), c.asString);
        const bool isList = c.stored && std::holds_alternative<QStringList>(*c.stored);
        const bool isData = c.stored && std::holds_alternative<QByteArray>(*c.stored);
        EXPECT_EQ(defaults.stringArrayForKey(key).has_value(), isList);
        EXPECT_EQ(defaults.dataForKey(key).has_value(), isData);
    }
}

TEST_F(UserDefaults, EveryTypeRoundTripsThroughTheFileWithItsType) {
    const std::vector<std::pair<QString, UserDefaultsValue>> values = {
        {QStringLiteral("bool"), UserDefaultsValue(false)},
        {QStringLiteral("largest"), UserDefaultsValue(kMax)},
        {QStringLiteral("smallest"), UserDefaultsValue(kMin)},
        {QStringLiteral("one as double"), UserDefaultsValue(1.0)},
        {QStringLiteral("tenth"), UserDefaultsValue(0.1)},
        {QStringLiteral("infinity"), UserDefaultsValue(-kInfinity)},
        {QStringLiteral("string"), text("dark ⚠️ \"quoted\"\n")},
        {QStringLiteral("list"), UserDefaultsValue(QStringList{QStringLiteral("/a b/c.mov"), QString()})},
        {QStringLiteral("data"), UserDefaultsValue(QByteArray("\x00\x01\xfe\xff", 4))},
    };
    {
        Store writer(path());
        for (const auto& [key, value] : values) writer.setObject(value, key);
        writer.setDouble(kNaN, QStringLiteral("nan"));
    }
    const Store reader(path());
    for (const auto& [key, value] : values) {
        SCOPED_TRACE(key.toStdString());
        EXPECT_EQ(reader.objectForKey(key), std::optional(value));  // the variant compares type and value
    }
    const std::optional<UserDefaultsValue> nan = reader.objectForKey(QStringLiteral("nan"));
    ASSERT_TRUE(nan && std::holds_alternative<double>(*nan));
    EXPECT_TRUE(std::isnan(std::get<double>(*nan)));
    EXPECT_TRUE(captureLogLines().isEmpty());
}

TEST_F(UserDefaults, ACorruptFileIsSetAsideUnchangedAndTheStoreStartsEmpty) {
    const std::vector<std::pair<const char*, QByteArray>> cases = {
        {"not JSON", R"({"k": {"string": "dark")"},
        {"empty file", ""},
        {"top level is an array", R"([{"string": "dark"}])"},
        {"untyped value", R"({"k": "dark"})"},
        {"unknown type", R"({"k": {"colour": "dark"}})"},
        {"payload of the wrong type", R"({"k": {"bool": 1}})"},
        {"fractional integer", R"({"k": {"integer": 60.5}})"},
        {"bad base64", R"({"k": {"data": "***"}})"},
    };
    for (const auto& [name, bytes] : cases) {
        SCOPED_TRACE(name);
        QFileInfo(path()).absoluteDir().removeRecursively();
        QFile::remove(kestrum::captureLogFilePath());
        ASSERT_TRUE(kestrum::test::writeFileBytes(path(), bytes));
        const QDir folder = QFileInfo(path()).absoluteDir();

        Store defaults(path());

        const QStringList aside = folder.entryList({QStringLiteral("defaults.json.corrupt-*")}, QDir::Files);
        ASSERT_EQ(aside.size(), 1);
        EXPECT_TRUE(QRegularExpression(QStringLiteral(R"(^defaults\.json\.corrupt-\d{8}-\d{6}$)"))
                        .match(aside[0])
                        .hasMatch());
        EXPECT_EQ(kestrum::test::readFileBytes(folder.filePath(aside[0])), bytes);
        EXPECT_FALSE(defaults.objectForKey(QStringLiteral("k")).has_value());
        const QStringList log = captureLogLines();
        ASSERT_EQ(log.size(), 1);
        EXPECT_TRUE(log[0].contains(
            QStringLiteral("] [ERROR] [Capture] Settings file could not be read and was set aside: ") +
            folder.filePath(aside[0]) + QStringLiteral(" (")));

        // The next change makes a fresh file and leaves the set-aside one alone.
        defaults.setBool(true, QStringLiteral("k"));
        EXPECT_TRUE(Store(path()).boolForKey(QStringLiteral("k")));
        EXPECT_EQ(kestrum::test::readFileBytes(folder.filePath(aside[0])), bytes);
    }
}

TEST_F(UserDefaults, AMissingFileIsAnEmptyStoreAndRemovalReachesTheFile) {
    Store defaults(path());
    EXPECT_FALSE(defaults.objectForKey(QStringLiteral("a")).has_value());
    EXPECT_FALSE(QFile::exists(path()));
    defaults.setInteger(1, QStringLiteral("a"));
    defaults.setInteger(2, QStringLiteral("b"));
    defaults.removeObjectForKey(QStringLiteral("a"));

    EXPECT_FALSE(defaults.objectForKey(QStringLiteral("a")).has_value());
    const Store reread(path());
    EXPECT_FALSE(reread.objectForKey(QStringLiteral("a")).has_value());
    EXPECT_EQ(reread.integerForKey(QStringLiteral("b")), 2);
    EXPECT_TRUE(captureLogLines().isEmpty());
}

TEST_F(UserDefaults, ValueChangedFollowsEachChangeOnItsThreadAfterTheWrite) {
    Store defaults(path());
    QStringList seen;
    QObject::connect(
        &defaults, &Store::valueChanged, &defaults,
        [&](const QString& key) {
            const bool onDisk = Store(path()).objectForKey(key).has_value();
            const bool onWorker = QThread::currentThread() != QCoreApplication::instance()->thread();
            seen.append(key + (onDisk ? QStringLiteral(" stored") : QStringLiteral(" gone")) +
                        (onWorker ? QStringLiteral(" on worker") : QString()));
        },
        Qt::DirectConnection);
    const QString volume = QStringLiteral("playbackVolume");
    defaults.setDouble(0.5, volume);
    defaults.setDouble(0.5, volume);  // same value: no change
    defaults.setInteger(0, volume);   // other type: a change
    defaults.removeObjectForKey(volume);
    defaults.removeObjectForKey(volume);  // already gone: no change
    std::thread([&defaults] { defaults.setBool(true, QStringLiteral("playbackMuted")); }).join();

    EXPECT_EQ(seen,
              (QStringList{QStringLiteral("playbackVolume stored"), QStringLiteral("playbackVolume stored"),
                           QStringLiteral("playbackVolume gone"),
                           QStringLiteral("playbackMuted stored on worker")}));
}

TEST_F(UserDefaults, AFailedWriteKeepsTheValueInMemoryAndLogsOneError) {
    // A plain file where the folder should be: neither the folder nor the file can be made.
    ASSERT_TRUE(kestrum::test::writeFileBytes(QFileInfo(path()).absolutePath(), "in the way"));
    Store defaults(path());
    defaults.setDouble(0.25, QStringLiteral("playbackVolume"));

    EXPECT_EQ(defaults.doubleForKey(QStringLiteral("playbackVolume")), 0.25);
    const QStringList log = captureLogLines();
    ASSERT_EQ(log.size(), 1);
    EXPECT_TRUE(
        log[0].contains(QStringLiteral("] [ERROR] [Capture] Settings could not be saved: ") + path()));
}

TEST_F(UserDefaults, TheStandardStoreLivesInTheConfigFolderOnTheMainThread) {
    Store* fromWorker = nullptr;
    std::thread([&fromWorker] { fromWorker = &Store::standard(); }).join();
    EXPECT_EQ(fromWorker, &Store::standard());
    EXPECT_EQ(fromWorker->filePath(),
              kestrum::test::testConfigDirectory() + QStringLiteral("/Kestrum/defaults.json"));
    EXPECT_EQ(fromWorker->thread(), QCoreApplication::instance()->thread());
}

}  // namespace

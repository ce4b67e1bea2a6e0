#include "app/DashboardLaunchOptions.h"

#include <QRegularExpression>

#include <functional>
#include <map>

namespace kestrum {

namespace {

using Options = DashboardLaunchOptions;
// Reads an option's value into the options; the error's text, or empty.
using ValueReader = std::function<QString(Options&, const QString&)>;

QString readRow(std::optional<int>& row, const QString& value) {
    bool ok = false;
    const int number = value.toInt(&ok);
    if (!ok || number < 0) return QStringLiteral("a row is a whole number from 0, not \"%1\"").arg(value);
    row = number;
    return {};
}

const std::map<QString, ValueReader>& valueReaders() {
    static const std::map<QString, ValueReader> readers{
        {QStringLiteral("--screenshot"),
         [](Options& options, const QString& value) {
             options.screenshotPath = value;
             return QString();
         }},
        {QStringLiteral("--size"),
         [](Options& options, const QString& value) {
             static const QRegularExpression shape(QStringLiteral("^(\\d+)x(\\d+)$"));
             const QRegularExpressionMatch match = shape.match(value);
             if (!match.hasMatch()) return QStringLiteral("--size takes WIDTHxHEIGHT, not \"%1\"").arg(value);
             options.size = QSize(match.captured(1).toInt(), match.captured(2).toInt());
             return QString();
         }},
        {QStringLiteral("--appearance"),
         [](Options& options, const QString& value) {
             if (value != QLatin1String("light") && value != QLatin1String("dark"))
                 return QStringLiteral("--appearance takes light or dark, not \"%1\"").arg(value);
             options.dark = value == QLatin1String("dark");
             return QString();
         }},
        {QStringLiteral("--art-host"),
         [](Options& options, const QString& value) {
             const QUrl url(value);
             if (!url.isValid() || url.scheme().isEmpty())
                 return QStringLiteral("--art-host takes a URL, not \"%1\"").arg(value);
             options.artHost = url;
             return QString();
         }},
        {QStringLiteral("--select"),
         [](Options& options, const QString& value) { return readRow(options.selectRow, value); }},
        {QStringLiteral("--pending"),
         [](Options& options, const QString& value) { return readRow(options.pendingRow, value); }},
        {QStringLiteral("--hover"),
         [](Options& options, const QString& value) { return readRow(options.hoverRow, value); }},
        {QStringLiteral("--context-menu"),
         [](Options& options, const QString& value) { return readRow(options.contextMenuRow, value); }},
        {QStringLiteral("--at"),
         [](Options& options, const QString& value) {
             bool ok = false;
             const double seconds = value.toDouble(&ok);
             if (!ok || seconds < 0)
                 return QStringLiteral("--at takes seconds from 0, not \"%1\"").arg(value);
             options.atSeconds = seconds;
             return QString();
         }},
    };
    return readers;
}

}  // namespace

std::variant<DashboardLaunchOptions, QString> DashboardLaunchOptions::parse(const QStringList& arguments) {
    Options options;
    for (qsizetype index = 1; index < arguments.size(); ++index) {
        const QString& argument = arguments.at(index);
        if (argument == QLatin1String("--dashboard")) {
            options.opensDashboard = true;
        } else if (argument == QLatin1String("--pin-scoreboard")) {
            options.pinsScoreboard = true;
        } else if (argument == QLatin1String("--open-filters")) {
            options.opensFilters = true;
        } else if (argument == QLatin1String("--speed-menu")) {
            options.opensSpeedMenu = true;
        } else if (argument == QLatin1String("--guide")) {
            options.opensGuide = true;
        } else if (const auto reader = valueReaders().find(argument); reader != valueReaders().end()) {
            if (index + 1 >= arguments.size()) return QStringLiteral("%1 needs a value").arg(argument);
            if (QString error = reader->second(options, arguments.at(++index)); !error.isEmpty())
                return error;
        }
    }
    const bool asksForWindow = options.screenshotPath || options.selectRow || options.pendingRow ||
                               options.hoverRow || options.opensFilters || options.pinsScoreboard ||
                               options.contextMenuRow || options.opensSpeedMenu || options.opensGuide;
    if (asksForWindow && !options.opensDashboard)
        return QStringLiteral("the window's options need --dashboard");
    return options;
}

}  // namespace kestrum
